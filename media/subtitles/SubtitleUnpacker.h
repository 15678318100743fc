#pragma once
#include <QByteArray>
#include <QString>
#include <functional>

/// Extracts a subtitle from gzip or ZIP data, recognised by its bytes.
namespace SubtitleUnpacker
{
inline constexpr qsizetype MaxBytes = 8LL * 1024 * 1024;
inline constexpr qsizetype MaxRatio = 100;

enum class Failure
{
    None,
    TooLarge,
    Damaged,
    NothingInside,
    Locked, // by a password
    UnknownArchive
};

struct Unpacked
{
    QByteArray content;
    QString name; // the base name inside an archive; empty where there is none
    Failure failure = Failure::None;
};

/// Returns whether a content is acceptable.
using Check = std::function<bool(const QByteArray &)>;

/// Returns data that is not an archive unchanged. The result is at most MaxBytes and MaxRatio times the
/// input. Takes the likeliest file of an archive, by its name, that can be read and that `isGood` accepts;
/// otherwise the likeliest one, or the failure. Any thread.
Unpacked unpack(const QByteArray &bytes, const Check &isGood);
} // namespace SubtitleUnpacker
