#pragma once
#include "Result.h"
#include <QByteArray>

class FileSystemCalls;

/// One move of a file or folder, by the surest way the file systems allow: a rename; where that cannot refuse
/// to replace, a second link whose first one goes; and between file systems a flushed copy beside the
/// destination that then takes its place in one of these ways. A process that dies on the way leaves the
/// source whole, and under the destination's name what was there before or the whole file. Lives for one
/// move, on any thread.
class FileMove final
{
public:
    /// What is done with an item that is at the destination already.
    enum class Existing
    {
        Refused,
        Replaced // a file goes; a folder goes to the trash
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
    Error failure(int code);

    FileSystemCalls &m_calls;
    const QByteArray m_source;
    const QByteArray m_destination;
    const Existing m_existing;
};
