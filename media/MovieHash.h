#pragma once
#include "RegularFile.h"

#include <model/Query.h>
#include <QUrl>
#include <chrono>
#include <functional>

/// The hash of a local regular file of at least 131,072 bytes; nothing for any other, and when a read falls
/// short or the file changes meanwhile. Reads 128 KiB; never blocks on a pipe or device. Any thread. The
/// algorithm: size plus the sum of the little-endian 64-bit words of the first and last 64 KiB.
std::optional<VideoHash> movieHash(const QUrl &url);

/// The same of any content that can be read by offset.
std::optional<VideoHash> movieHash(VideoContent &content);

using VideoOpener = std::function<std::unique_ptr<VideoContent>(const QByteArray &path)>;

/// The same of a file, or nothing after `timeout`: a disk may sleep and a share may be gone, and neither
/// opening nor reading can be interrupted then. A thread of its own does both; its late answer is dropped.
/// `open` is called on that thread.
std::optional<VideoHash> movieHashWithin(std::chrono::milliseconds timeout, const QUrl &url,
                                         const VideoOpener &open = openRegularFile);
