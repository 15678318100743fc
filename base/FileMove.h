#pragma once
#include "Result.h"
#include <QByteArray>

class FileSystemCalls;

/// Moves one file or folder in the safest way that the file systems support: a rename; if that cannot refuse
/// to replace, a second link and removal of the first; between file systems a flushed copy beside the
/// destination, published in one of these ways. If the process dies, the source is whole, and the destination
/// is unchanged or holds the whole file. One object serves one move. Any thread.
class FileMove final
{
public:
    /// What happens to an item that exists at the destination.
    enum class Existing
    {
        Refused,
        Replaced // a file is replaced, a folder is moved to the trash
    };

    FileMove(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination,
             Existing existing);

    Result<void> run();

private:
    int publish(const QByteArray &from, const QByteArray &to);
    int publishInPlaceOf(const QByteArray &from, const QByteArray &to);
    int publishFolder(const QByteArray &from, const QByteArray &to);
    int dropFirstName(const QByteArray &first, const QByteArray &second);
    int renameWhereNothingIs(const QByteArray &from, const QByteArray &to);
    Result<void> copyAcross(const struct stat &status);
    int copyInto(int target, const struct stat &status);
    int copyBytes(int from, int to);
    base::Error failure(int code);

    FileSystemCalls &m_calls;
    const QByteArray m_source;
    const QByteArray m_destination;
    const Existing m_existing;
};
