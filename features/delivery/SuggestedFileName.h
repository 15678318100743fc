#pragma once
#include <model/Subtitle.h>
#include <QUrl>
#include <optional>

/// The name that a save sheet suggests for a subtitle of the video: the video's name without its last
/// extension, the language and the format in lower case ("Movie.2019.en.srt"). None without a video.
std::optional<QString> suggestedFileName(const std::optional<QUrl> &video, const Subtitle &subtitle);
