#pragma once
#include <platform/Result.h>
#include <QByteArray>

class FileSystemCalls;

/// One move of a file or folder to a place where nothing is yet, by the surest way the file systems allow:
/// a rename that refuses to replace; else a second link whose first one goes; else a rename over an empty
/// file that only we can have made; and between file systems a flushed copy that is published in one of these
/// ways. Lives for one move, on any thread.
class FileMove final
{
public:
    FileMove(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination);

    Result<void> run();

private:
    int publish(const QByteArray &from, const QByteArray &to);
    int publishFolder(const QByteArray &from, const QByteArray &to);
    int dropFirstName(const QByteArray &first, const QByteArray &second);
    int publishOverOwnFile(const QByteArray &from, const QByteArray &to);
    Result<void> copyAcross(const struct stat &status);
    int makeTemporary(QByteArray &name);
    int copyInto(int target, const struct stat &status);
    int copyBytes(int from, int to);
    int flushFolder(const QByteArray &folder);
    Error failure(int code);

    FileSystemCalls &m_calls;
    const QByteArray m_source;
    const QByteArray m_destination;
};
