#pragma once
#include "Result.h"
#include <QUrl>
#include <memory>
#include <optional>

class FileSystemCalls;

/// Moves files and creates folders, named by file URLs. Any thread; no state but the system calls it goes
/// through. Names keep the bytes they have on disk: a URL's percent-encoded bytes that are not UTF-8 survive.
class FileManager
{
public:
    FileManager();
    /// Goes through `calls` instead of the system's, so that tests can let them fail.
    explicit FileManager(std::shared_ptr<FileSystemCalls> calls);
    virtual ~FileManager();

    static FileManager &defaultManager();
    static void setDefaultManager(std::shared_ptr<FileManager> manager);

    /// Moves a file or folder to a place where nothing is yet. A failure leaves the source whole and the
    /// destination as it was; the error says what failed and where. Domain "FileManager", code the errno
    /// value.
    ///
    /// Across file systems, files only: copies beside the destination, flushes, publishes without replacing,
    /// then removes the source. A source that cannot be removed then stays beside its copy, and the move has
    /// succeeded: what was asked for is there, and a failing disk is no reason to take it away again.
    virtual Result<void> moveItem(const QUrl &source, const QUrl &destination);
    /// Moves a file to a place where an older item gives way to it: a file or link in the moment in which the
    /// new one takes its place, a folder to the trash once the new file is on its disk. A failure leaves the
    /// source whole and the older item there, or in the trash.
    virtual Result<void> moveItemReplacing(const QUrl &source, const QUrl &destination);
    virtual Result<void> createDirectory(const QUrl &folder);
    virtual bool fileExists(const QUrl &item) const;
    /// The person's Movies folder: the desktop's folder for videos, read anew; where the desktop names none,
    /// an existing "Videos" in the home folder. Nothing when there is neither or the person has turned it
    /// off.
    virtual std::optional<QUrl> moviesFolder() const;

    /// The name on disk that a file URL of this computer spells ("file:///a", "file://localhost/a"), as the
    /// file system's bytes; empty for other URLs.
    static QByteArray fileSystemPath(const QUrl &url);
    /// The file URL that spells exactly these bytes.
    static QUrl urlFromFileSystemPath(const QByteArray &path);
    /// The last path component for showing: bytes that are not UTF-8 become replacement characters.
    static QString displayName(const QUrl &url);
    /// The whole path for showing, with "~" for the home folder.
    static QString displayPath(const QUrl &url);
    /// Whether a move failed because something is at its destination.
    static bool isDestinationTaken(const Error &error);

private:
    std::shared_ptr<FileSystemCalls> m_calls;
};
