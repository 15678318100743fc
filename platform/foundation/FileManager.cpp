#include "FileManager.h"
#include "FileErrors.h"
#include "FileMove.h"
#include "FilePaths.h"
#include "FileSystemCalls.h"
#include "MoviesFolder.h"

#include <cerrno>
#include <mutex>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
std::mutex managerMutex;

std::shared_ptr<FileManager> &installedManager()
{
    static std::shared_ptr<FileManager> manager = std::make_shared<FileManager>();
    return manager;
}

int removeTree(FileSystemCalls &calls, const QByteArray &path)
{
    struct stat status = {};
    if (const int found = calls.status(path, status); found < 0)
        return found;
    if (!S_ISDIR(status.st_mode))
        return calls.unlink(path);
    QList<QByteArray> names;
    if (const int listed = calls.listFolder(path, names); listed < 0)
        return listed;
    for (const QByteArray &name : std::as_const(names)) {
        if (const int removed = removeTree(calls, path + '/' + name); removed < 0)
            return removed;
    }
    return calls.removeFolder(path);
}
} // namespace

FileManager::FileManager() : FileManager(std::make_shared<FileSystemCalls>()) {}
FileManager::FileManager(std::shared_ptr<FileSystemCalls> calls) : m_calls(std::move(calls)) {}
FileManager::~FileManager() = default;

FileManager &FileManager::defaultManager()
{
    const std::scoped_lock lock(managerMutex);
    return *installedManager();
}

void FileManager::setDefaultManager(std::shared_ptr<FileManager> manager)
{
    const std::scoped_lock lock(managerMutex);
    installedManager() = manager ? std::move(manager) : std::make_shared<FileManager>();
}

Result<void> FileManager::moveItem(const QUrl &source, const QUrl &destination)
{
    const QByteArray from = fileSystemPath(source);
    const QByteArray to = fileSystemPath(destination);
    if (from.isEmpty())
        return notAFileError(source.toString());
    if (to.isEmpty())
        return notAFileError(destination.toString());
    return FileMove(*m_calls, from, to).run();
}

Result<void> FileManager::createDirectory(const QUrl &folder)
{
    const QByteArray path = fileSystemPath(folder);
    if (path.isEmpty())
        return notAFileError(folder.toString());
    if (const int made = m_calls->makeFolder(path); made < 0)
        return createFolderError(-made, path);
    return {};
}

Result<void> FileManager::removeItem(const QUrl &item)
{
    const QByteArray path = fileSystemPath(item);
    if (path.isEmpty())
        return notAFileError(item.toString());
    if (const int removed = removeTree(*m_calls, path); removed < 0)
        return removeError(-removed, path);
    return {};
}

bool FileManager::fileExists(const QUrl &item) const
{
    const QByteArray path = fileSystemPath(item);
    struct stat status = {};
    return !path.isEmpty() && m_calls->statusOfTarget(path, status) == 0;
}

std::optional<QUrl> FileManager::moviesFolder() const
{
    const std::optional<QByteArray> path = personalMoviesFolder();
    return path ? std::optional<QUrl>(urlFromFileSystemPath(*path)) : std::nullopt;
}

QByteArray FileManager::fileSystemPath(const QUrl &url)
{
    const QString host = url.host();
    if (url.scheme() != u"file" || (!host.isEmpty() && host != u"localhost"))
        return {};
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    // A NUL would end the name early, at another file.
    if (!path.startsWith('/') || path.contains('\0'))
        return {};
    return withoutTrailingSlashes(path);
}

QUrl FileManager::urlFromFileSystemPath(const QByteArray &path)
{
    // As the toolkit spells it, so that two URLs of one file are equal; bytes that are no text it would lose.
    const QUrl url = QUrl::fromLocalFile(QString::fromUtf8(path));
    if (fileSystemPath(url) == withoutTrailingSlashes(path))
        return url;
    return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"), QUrl::StrictMode);
}

QString FileManager::displayName(const QUrl &url)
{
    return textOfName(lastComponent(fileSystemPath(url)));
}
