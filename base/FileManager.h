#pragma once
#include "Result.h"
#include <QUrl>
#include <memory>
#include <optional>

class FileSystemCalls;

/// Moves files and creates folders, addressed by file URLs. Any thread; stateless but for its system calls.
/// Names keep their bytes on disk: percent-encoded bytes that are not UTF-8 survive.
class FileManager
{
public:
    FileManager();
    /// Uses `calls` instead of the system's calls, so that tests can make them fail.
    explicit FileManager(std::shared_ptr<FileSystemCalls> calls);
    virtual ~FileManager();

    static FileManager &defaultManager();
    static void setDefaultManager(std::shared_ptr<FileManager> manager);

    /// Moves an item to a path that does not exist yet. On failure the source and the destination
    /// are unchanged; the error says what failed and where. Domain "FileManager", code the errno value.
    ///
    /// Only files can move between file systems: the file is copied beside the destination, flushed,
    /// published without replacing, and then the source is removed. A source that cannot be removed stays
    /// beside its copy and the move still succeeds, because the requested file exists.
    virtual Result<void> moveItem(const QUrl &source, const QUrl &destination);
    /// Moves a file to a path and replaces an older item there. A file or link is replaced atomically; a
    /// folder is moved to the trash once the new file is on its disk. On failure the source is unchanged, and
    /// the older item is in place or in the trash.
    virtual Result<void> moveItemReplacing(const QUrl &source, const QUrl &destination);
    virtual Result<void> createDirectory(const QUrl &folder);
    virtual bool fileExists(const QUrl &item) const;
    /// The person's Movies folder: the desktop's folder for videos, read anew on each call; when the desktop
    /// names none, an existing "Videos" in the home folder. None when there is neither or the setting turns
    /// it off.
    virtual std::optional<QUrl> moviesFolder() const;

    /// The path that a local file URL ("file:///a", "file://localhost/a") names, as the file system's bytes;
    /// empty for other URLs.
    static QByteArray fileSystemPath(const QUrl &url);
    /// The file URL for exactly these bytes.
    static QUrl urlFromFileSystemPath(const QByteArray &path);
    /// The last path component for display. Bytes that are not UTF-8 become replacement characters.
    static QString displayName(const QUrl &url);
    /// The whole path for display, with "~" for the home folder.
    static QString displayPath(const QUrl &url);
    /// Whether a move failed because its destination exists.
    static bool isDestinationTaken(const base::Error &error);

private:
    std::shared_ptr<FileSystemCalls> m_calls;
};
