#pragma once
#include <model/Subtitle.h>
#include <QUrl>
#include <optional>

/// File names as their bytes on disk, which need not be UTF-8.
namespace FileName
{
/// The part of the path after the last "/", ignoring trailing ones, for a URL of any scheme; empty for a path
/// of slashes.
QByteArray lastPathComponent(const QUrl &url);
/// The name without its last extension. A dot at the start or at the end does not count: ".profile" and
/// "Film." stay unchanged.
QByteArray deletingPathExtension(const QByteArray &name);
} // namespace FileName

/// The name that a save sheet suggests for a subtitle of the video: the video's name without its last
/// extension, the language and the format in lower case ("Movie.2019.en.srt"). None without a video.
std::optional<QString> suggestedFileName(const std::optional<QUrl> &video, const Subtitle &subtitle);
