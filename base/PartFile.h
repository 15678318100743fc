#pragma once
#include <QByteArray>
#include <sys/types.h>

class FileSystemCalls;
struct stat;

/// The file beside a destination in which its new content grows until it takes its place:
/// ".plovendix-….part". A lock tells that its maker is at work; the file of a maker that died has none and is
/// removed when the next file comes into that folder. On any thread.
class PartFile final
{
public:
    explicit PartFile(FileSystemCalls &calls) : m_calls(calls) {}
    /// Removes the file, unless it has taken its place.
    ~PartFile();
    PartFile(const PartFile &) = delete;
    PartFile &operator=(const PartFile &) = delete;

    /// Makes the file. Below 0: a negated errno value, and there is none.
    int make(const QByteArray &folder, mode_t mode);
    const QByteArray &path() const { return m_path; }
    /// For writing.
    int descriptor() const { return m_descriptor; }
    /// Ends the writing; the lock stays. Below 0: the content may be incomplete.
    int finishWriting();
    /// The file has another name now.
    void release() { m_path.clear(); }

    /// Removes what dead processes of this person have left in the folder. Failures are left for the next
    /// time.
    static void removeLeftovers(FileSystemCalls &calls, const QByteArray &folder);

private:
    int open(const QByteArray &path, mode_t mode);
    void close(int &descriptor);

    FileSystemCalls &m_calls;
    QByteArray m_path; // empty for none
    int m_descriptor = -1;
    int m_lock = -1; // the same open file
};
