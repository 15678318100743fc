#pragma once
#include <model/Query.h>
#include <QUrl>
#include <chrono>
#include <functional>
#include <memory>
#include <span>

/// Content with random access that may change during reading.
class VideoContent
{
public:
    virtual ~VideoContent() = default;

    /// The present size; none when it cannot be determined.
    virtual std::optional<quint64> size() = 0;
    /// Fills `buffer` from `offset` on; returns false when that fails.
    virtual bool readExactly(quint64 offset, std::span<char> buffer) = 0;
};

/// Opens a regular file by the bytes of its path. Null for folders, pipes, devices, sockets and unreadable
/// files; never blocks on a pipe. Any thread.
std::unique_ptr<VideoContent> openRegularFile(const QByteArray &path);

/// The hash of a local regular file of at least 131,072 bytes; none for other files, and when a read is short
/// or the file changes meanwhile. Reads 128 KiB; never blocks on a pipe or device. Any thread. The algorithm:
/// size plus the sum of the little-endian 64-bit words of the first and last 64 KiB.
std::optional<VideoHash> movieHash(const QUrl &url);

/// The same for any content with random access.
std::optional<VideoHash> movieHash(VideoContent &content);

using VideoOpener = std::function<std::unique_ptr<VideoContent>(const QByteArray &path)>;

/// The same for a file, or none after `timeout`: opening and reading cannot be interrupted while a disk spins
/// up or a share is gone. A detached thread does both and calls `open`; a late result is dropped.
std::optional<VideoHash> movieHashWithin(std::chrono::milliseconds timeout, const QUrl &url,
                                         const VideoOpener &open = openRegularFile);
