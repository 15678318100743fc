#pragma once
#include <QByteArray>
#include <memory>
#include <optional>
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
