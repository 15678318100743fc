#pragma once
#include <QByteArray>
#include <QString>
#include <functional>

/// Takes a subtitle out of the gzip or ZIP it came in, by its bytes and whatever its name.
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

/// Whether a content is what is looked for.
using Check = std::function<bool(const QByteArray &)>;

/// What is no archive comes back as it is. At most MaxBytes, and MaxRatio times what came. Of an archive's
/// files the likeliest by its name that can be read and that `isGood` takes; where there is none, the
/// likeliest as it is, or what is wrong with it. Any thread.
Unpacked unpack(const QByteArray &bytes, const Check &isGood);
} // namespace SubtitleUnpacker
