#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

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
    UnknownArchive
};

struct Unpacked
{
    QByteArray content;
    QString name; // the base name inside an archive; empty where there is none
    Failure failure = Failure::None;
};

/// What is no archive comes back as it is. At most MaxBytes, and MaxRatio times what came. Any thread.
Unpacked unpack(const QByteArray &bytes);
} // namespace SubtitleUnpacker
