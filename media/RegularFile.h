#pragma once
#include <QByteArray>
#include <memory>
#include <optional>
#include <span>

/// Content that is read by offset and may change while it is read.
class VideoContent
{
public:
    virtual ~VideoContent() = default;

    /// The size at this moment; nothing when it cannot be told any more.
    virtual std::optional<quint64> size() = 0;
    /// Fills all of `buffer` from `offset` on, or says that it could not.
    virtual bool readExactly(quint64 offset, std::span<char> buffer) = 0;
};

/// Opens a regular file by the bytes of its path. Nothing for folders, pipes, devices, sockets and what
/// cannot be read; opening never waits for the other end of a pipe. Any thread.
std::unique_ptr<VideoContent> openRegularFile(const QByteArray &path);
