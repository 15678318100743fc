#pragma once
#include <search/api/Query.h>
#include <QUrl>

class VideoContent;

/// The hash of a local regular file of at least 131,072 bytes; nothing for any other, and when a read falls
/// short or the file changes meanwhile. Reads 128 KiB; never blocks on a pipe or device. Any thread. The
/// algorithm: size plus the sum of the little-endian 64-bit words of the first and last 64 KiB.
std::optional<VideoHash> movieHash(const QUrl &url);

/// The same of any content that can be read by offset.
std::optional<VideoHash> movieHash(VideoContent &content);
