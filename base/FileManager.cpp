#include "FileManager.h"
#include "FileErrors.h"
#include "FileMove.h"
#include "FileSystemCalls.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>

#include <cerrno>
#include <mutex>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxFolderListBytes = 65'536;
constexpr char MoviesKey[] = "XDG_VIDEOS_DIR=";
constexpr char HomeMark[] = "$HOME";

std::mutex managerMutex;

std::shared_ptr<FileManager> &installedManager()
{
    static std::shared_ptr<FileManager> manager = std::make_shared<FileManager>();
    return manager;
}

Result<void> move(FileSystemCalls &calls, const QUrl &source, const QUrl &destination, Existing existing)
{
    const QByteArray from = FileManager::fileSystemPath(source);
    const QByteArray to = FileManager::fileSystemPath(destination);
    if (from.isEmpty())
        return notAFileError(source.toString());
    if (to.isEmpty())
        return notAFileError(destination.toString());
    return moveFile(calls, from, to, existing);
}

bool isThisComputer(const QString &host)
{
    return host.isEmpty() || host == u"localhost" ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

QByteArray homeFolder()
{
    return withoutTrailingSlashes(QFile::encodeName(QDir::homePath()));
}

QByteArray withoutEscapes(const QByteArray &text)
{
    QByteArray plain;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (text.at(place) == '\\' && place + 1 < text.size())
            ++place;
        plain += text.at(place);
    }
    return plain;
}

/// The path of one assignment in user-dirs.dirs: in double quotes, absolute or below $HOME.
QByteArray assignedPath(const QByteArray &assigned)
{
    const qsizetype end = assigned.lastIndexOf('"');
    if (!assigned.startsWith('"') || end < 1)
        return {};
    const QByteArray quoted = assigned.mid(1, end - 1);
    if (quoted == HomeMark || quoted.startsWith(QByteArray(HomeMark) + '/'))
        return withoutTrailingSlashes(homeFolder() + withoutEscapes(quoted.mid(sizeof HomeMark - 1)));
    return quoted.startsWith('/') ? withoutTrailingSlashes(withoutEscapes(quoted)) : QByteArray();
}

/// The Movies folder that the desktop's user-dirs.dirs names, the home folder when it is turned off; empty
/// when none is named.
QByteArray configuredMoviesFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QFile file(config + u"/user-dirs.dirs"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray path;
    const QList<QByteArray> lines = file.read(MaxFolderListBytes).split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith(MoviesKey))
            path = assignedPath(trimmed.mid(sizeof MoviesKey - 1));
    }
    return path;
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
    return move(*m_calls, source, destination, Existing::Refused);
}

Result<void> FileManager::moveItemReplacing(const QUrl &source, const QUrl &destination)
{
    return move(*m_calls, source, destination, Existing::Replaced);
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
    return !path.isEmpty() && ::access(path.constData(), F_OK) == 0;
}

std::optional<QUrl> FileManager::moviesFolder() const
{
    const QByteArray configured = configuredMoviesFolder();
    if (configured == homeFolder())
        return {};
    if (!configured.isEmpty())
        return urlFromFileSystemPath(configured);
    const QString usual = QDir::home().filePath(u"Videos"_s);
    return QFileInfo(usual).isDir() ? std::optional(QUrl::fromLocalFile(usual)) : std::nullopt;
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
    return QString::fromUtf8(lastComponent(fileSystemPath(url)));
}

QString FileManager::displayPath(const QUrl &url)
{
    const QByteArray path = fileSystemPath(url);
    const QByteArray home = withoutTrailingSlashes(qgetenv("HOME"));
    const bool isBelowHome = home.size() > 1 && (path == home || path.startsWith(home + '/'));
    return QString::fromUtf8(isBelowHome ? '~' + path.mid(home.size()) : path);
}

bool FileManager::isDestinationTaken(const base::Error &error)
{
    return error.domain == FileErrorDomain && (error.code == EEXIST || error.code == ENOTEMPTY);
}
