#include "FileWriting.h"
#include "FileErrors.h"
#include "FileSystemCalls.h"
#include "PartFile.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <atomic>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr int MaxDamagedFiles = 1000;
constexpr int MaxLinks = 40;
constexpr mode_t OwnersMode = 0600;
constexpr mode_t OrdinaryMode = 0666;

std::atomic<FileSystemCalls *> callsOfTest = nullptr;

FileSystemCalls &callsInUse()
{
    static FileSystemCalls own;
    FileSystemCalls *const given = callsOfTest;
    return given ? *given : own;
}

/// The final target of a symbolic link.
QString followed(const QString &path)
{
    QFileInfo end(path);
    for (int links = 0; end.isSymLink() && links < MaxLinks; ++links)
        end.setFile(end.symLinkTarget());
    return end.absoluteFilePath();
}

QByteArray folderOf(const QString &path)
{
    return QFile::encodeName(QFileInfo(path).absolutePath());
}

/// The errno value of what prevents replacing the file, or 0. A rename would also replace a device or a file
/// that the person made read-only.
int obstacleAt(const QFileInfo &file)
{
    if (file.isSymLink())
        return -ELOOP;
    if (!file.exists())
        return 0;
    if (file.isDir())
        return -EISDIR;
    if (!file.isFile())
        return -EINVAL;
    return file.isWritable() ? 0 : -EACCES;
}

/// Makes the folder and what is missing above it.
int makeFolders(FileSystemCalls &calls, const QByteArray &folder)
{
    int made = calls.makeFolder(folder);
    if (made == -ENOENT && parentFolder(folder) != folder) {
        const int above = makeFolders(calls, parentFolder(folder));
        made = above < 0 ? above : calls.makeFolder(folder);
    }
    return made == -EEXIST ? 0 : made;
}

int makePart(FileSystemCalls &calls, PartFile &part, const QByteArray &folder, const QByteArray &givenFolder,
             mode_t mode)
{
    const int made = part.make(folder, mode);
    if (made != -ENOENT)
        return made;
    const int folders = makeFolders(calls, givenFolder);
    return folders < 0 ? folders : part.make(folder, mode);
}

int replace(FileSystemCalls &calls, const QByteArray &path, const QByteArray &givenFolder,
            const QByteArray &bytes, FileAccess access)
{
    const bool isForOwner = access != FileAccess::AsBefore;
    struct stat status = {};
    const bool isThere = calls.status(path, status) == 0;
    PartFile::removeLeftovers(calls, parentFolder(path));
    PartFile part(calls);
    const mode_t mode = isForOwner || isThere ? OwnersMode : OrdinaryMode;
    int result = makePart(calls, part, parentFolder(path), givenFolder, mode);
    if (result == 0 && isForOwner) {
        // A file system may have let others in, whatever mode the file was made with.
        const int closed = calls.setMode(part.descriptor(), OwnersMode);
        result = access == FileAccess::Secret ? closed : 0;
    }
    if (result == 0)
        result = part.write(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (result == 0 && isThere && !isForOwner)
        calls.setMode(part.descriptor(), status.st_mode & 0777U); // removable disks know no modes
    if (result == 0)
        result = part.finishWriting();
    if (result == 0)
        result = calls.rename(part.path(), path);
    if (result < 0)
        return result;
    // Until the folder is flushed, a power failure brings back the old file. It is whole, so a failed flush
    // is not reported.
    part.release();
    return 0;
}
} // namespace

Result<void> writeFile(const QString &path, const QByteArray &bytes, FileAccess access)
{
    const QString target = followed(path);
    const QByteArray name = QFile::encodeName(target);
    int result = obstacleAt(QFileInfo(target));
    if (result == 0)
        result = replace(callsInUse(), name, folderOf(path), bytes, access);
    if (result < 0)
        return writeError(-result, name);
    return {};
}

Result<void> makeFolders(const QString &folder)
{
    const QByteArray name = QFile::encodeName(QFileInfo(folder).absoluteFilePath());
    if (const int made = makeFolders(callsInUse(), withoutTrailingSlashes(name)); made < 0)
        return writeError(-made, name);
    return {};
}

std::optional<QString> setDamagedFileAside(const QString &path)
{
    for (int number = 1; number <= MaxDamagedFiles; ++number) {
        const QString name = u"%1.damaged-%2"_s.arg(path).arg(number);
        if (QFile::exists(name))
            continue;
        if (!QFile::rename(path, name))
            break;
        qCWarning(log, "%s was damaged and is kept as %s.", qUtf8Printable(path), qUtf8Printable(name));
        return name;
    }
    qCWarning(log, "%s is damaged and cannot be set aside.", qUtf8Printable(path));
    return std::nullopt;
}

void setCallsOfWriteFile(FileSystemCalls *calls)
{
    callsOfTest = calls;
}
