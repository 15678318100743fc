#include "DamagedFiles.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <mutex>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace
{
constexpr qsizetype MaxRemembered = 32;

struct FileIdentity
{
    QString path;
    quint64 device = 0;
    quint64 node = 0;
    qint64 size = 0;
    qint64 changed = 0; // nanoseconds if the system provides them

    bool operator==(const FileIdentity &) const = default;
};

#ifdef Q_OS_UNIX
FileIdentity identityOf(const QString &path)
{
    constexpr qint64 NanosecondsPerSecond = 1'000'000'000;
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {path};
#ifdef Q_OS_DARWIN
    const timespec &changed = status.st_ctimespec;
#else
    const timespec &changed = status.st_ctim;
#endif
    // Device and inode identify a file under any name.
    return {{},
            status.st_dev,
            status.st_ino,
            status.st_size,
            changed.tv_sec * NanosecondsPerSecond + changed.tv_nsec};
}
#else
FileIdentity identityOf(const QString &path)
{
    const QFileInfo file(path);
    return {file.canonicalFilePath(), 0, 0, file.size(), file.lastModified().toMSecsSinceEpoch()};
}
#endif
} // namespace

bool DamagedFiles::isFirstSight(const QString &path)
{
    static std::mutex mutex;
    static QList<FileIdentity> remembered; // the latest last
    const FileIdentity identity = identityOf(path);
    const std::scoped_lock lock(mutex);
    if (remembered.contains(identity))
        return false;
    if (remembered.size() >= MaxRemembered)
        remembered.removeFirst();
    remembered += identity;
    return true;
}
