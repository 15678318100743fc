#pragma once
#include "SubtitleFile.h"

#include <functional>

/// Extracts a subtitle from gzip or ZIP data, recognised by its bytes.
namespace SubtitleUnpacker
{
inline constexpr qsizetype MaxBytes = 8LL * 1024 * 1024;
inline constexpr qsizetype MaxRatio = 100;

struct Unpacked
{
    QByteArray content = {};
    SubtitleFile::Failure failure = SubtitleFile::Failure::None;
};

/// Returns whether a content is acceptable.
using Check = std::function<bool(const QByteArray &)>;

/// Returns data that is not an archive unchanged. The result is at most MaxBytes and MaxRatio times the
/// input. Takes the likeliest file of an archive, by its name, that can be read and that `isGood` accepts;
/// otherwise the likeliest one, or the failure. Any thread.
Unpacked unpack(const QByteArray &bytes, const Check &isGood);
} // namespace SubtitleUnpacker
