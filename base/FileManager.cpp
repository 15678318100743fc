#include "FileManager.h"
#include "FileErrors.h"
#include "FileMove.h"
#include "FilePaths.h"
#include "FileSystemCalls.h"
#include "MoviesFolder.h"

#include <QSysInfo>

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

Result<void> move(FileSystemCalls &calls, const QUrl &source, const QUrl &destination,
                  FileMove::Existing existing)
{
    const QByteArray from = FileManager::fileSystemPath(source);
    const QByteArray to = FileManager::fileSystemPath(destination);
    if (from.isEmpty())
        return notAFileError(source.toString());
    if (to.isEmpty())
        return notAFileError(destination.toString());
    return FileMove(calls, from, to, existing).run();
}

bool isThisComputer(const QString &host)
{
    return host.isEmpty() || host == u"localhost" ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
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
    return move(*m_calls, source, destination, FileMove::Existing::Refused);
}

Result<void> FileManager::moveItemReplacing(const QUrl &source, const QUrl &destination)
{
    return move(*m_calls, source, destination, FileMove::Existing::Replaced);
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
    if (url.scheme() != u"file" || !isThisComputer(url.host()))
        return {};
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    // A NUL would truncate the name and address another file.
    if (!path.startsWith('/') || path.contains('\0'))
        return {};
    return withoutTrailingSlashes(path);
}

QUrl FileManager::urlFromFileSystemPath(const QByteArray &path)
{
    // Prefer the toolkit's spelling, so that two URLs of one file are equal. It cannot represent bytes that
    // are not UTF-8.
    const QUrl url = QUrl::fromLocalFile(QString::fromUtf8(path));
    if (fileSystemPath(url) == withoutTrailingSlashes(path))
        return url;
    return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"), QUrl::StrictMode);
}

QString FileManager::displayName(const QUrl &url)
{
    return textOfName(lastComponent(fileSystemPath(url)));
}

QString FileManager::displayPath(const QUrl &url)
{
    const QByteArray path = fileSystemPath(url);
    const QByteArray home = withoutTrailingSlashes(qgetenv("HOME"));
    const bool isBelowHome = home.size() > 1 && (path == home || path.startsWith(home + '/'));
    return textOfName(isBelowHome ? '~' + path.mid(home.size()) : path);
}

bool FileManager::isDestinationTaken(const base::Error &error)
{
    return isFileError(error, EEXIST) || isFileError(error, ENOTEMPTY);
}
