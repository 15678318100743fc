#pragma once
#include <QByteArray>
#include <sys/types.h>

class FileSystemCalls;

/// The file beside a destination that collects its new content: ".plovendix-….part". A lock marks it as in
/// use; the file of a process that died has no lock and is removed when the next one is made in that folder.
/// Functions return a negative errno value on failure. Any thread.
class PartFile final
{
public:
    explicit PartFile(FileSystemCalls &calls) : m_calls(calls) {}
    /// Removes the file unless it was released.
    ~PartFile();
    PartFile(const PartFile &) = delete;
    PartFile &operator=(const PartFile &) = delete;

    /// Creates the file. On failure there is none.
    int make(const QByteArray &folder, mode_t mode);
    const QByteArray &path() const { return m_path; }
    int descriptor() const { return m_descriptor; }
    /// Writes all bytes, with as many calls as needed.
    int write(const char *bytes, std::size_t size);
    /// Brings the content to the disk and ends the writing; the lock stays. A file system that cannot flush
    /// is no failure.
    int finishWriting();
    /// Call after the file was renamed. Flushes the folder's names, unless the folder cannot be read.
    int release();

    /// Removes files in the folder that this user's dead processes left. Failures are retried next time.
    static void removeLeftovers(FileSystemCalls &calls, const QByteArray &folder);

private:
    int open(const QByteArray &path, mode_t mode);
    int flush(int descriptor);
    void close(int &descriptor);

    FileSystemCalls &m_calls;
    QByteArray m_path; // empty without a file
    int m_descriptor = -1;
    int m_lock = -1; // a descriptor of the same open file
};
