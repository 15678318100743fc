#pragma once
#include <QByteArray>
#include <sys/types.h>

class FileSystemCalls;
struct stat;

/// The file beside a destination that collects its new content: ".plovendix-….part". A lock marks it as in
/// use; the file of a process that died has no lock and is removed when the next one is made in that folder.
/// Any thread.
class PartFile final
{
public:
    explicit PartFile(FileSystemCalls &calls) : m_calls(calls) {}
    /// Removes the file unless it was renamed into place.
    ~PartFile();
    PartFile(const PartFile &) = delete;
    PartFile &operator=(const PartFile &) = delete;

    /// Creates the file. A negative errno value means that there is none.
    int make(const QByteArray &folder, mode_t mode);
    const QByteArray &path() const { return m_path; }
    /// The descriptor to write to.
    int descriptor() const { return m_descriptor; }
    /// Ends the writing; the lock stays. A negative value means that the content may be incomplete.
    int finishWriting();
    /// Call after the file was renamed.
    void release() { m_path.clear(); }

    /// Removes files in the folder that this user's dead processes left. Failures are retried next time.
    static void removeLeftovers(FileSystemCalls &calls, const QByteArray &folder);

private:
    int open(const QByteArray &path, mode_t mode);
    void close(int &descriptor);

    FileSystemCalls &m_calls;
    QByteArray m_path; // empty without a file
    int m_descriptor = -1;
    int m_lock = -1; // a descriptor of the same open file
};
