#include "FileErrors.h"
#include "FileSystemCalls.h"
#include "LocalizedString.h"

#include <QStringList>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
/// Each key is written out in full, so that translators can search for it.
QString moveSentence(int code)
{
    switch (code) {
    case EEXIST:
    case ENOTEMPTY:
        return u"“%1$@” could not be moved to “%2$@” because a file with that name already exists in “%3$@”."_s;
    case ENOENT:
        return u"“%1$@” could not be moved to “%3$@” because that folder does not exist."_s;
    case EXDEV:
        return u"“%1$@” could not be moved to “%3$@” because only files can be moved to another disk."_s;
    case ENOSPC:
    case EDQUOT:
        return u"“%1$@” could not be moved to “%3$@” because there is not enough free space."_s;
    case EACCES:
    case EPERM:
        return u"“%1$@” could not be moved to “%3$@” because you do not have the permission."_s;
    case EROFS:
        return u"“%1$@” could not be moved to “%3$@” because the disk can only be read."_s;
    case ENOTDIR:
        return u"“%1$@” could not be moved to “%3$@” because that is not a folder."_s;
    case ENAMETOOLONG:
        return u"“%1$@” could not be moved to “%2$@” because the name is too long."_s;
    case EFBIG:
        return u"“%1$@” could not be moved to “%3$@” because it is too large for that disk."_s;
    default:
        return u"“%1$@” could not be moved to “%3$@” because of an error of the system: %4$@."_s;
    }
}

QString writeSentence(int code)
{
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return u"There is not enough free space."_s;
    case EACCES:
    case EPERM:
        return u"You do not have the permission."_s;
    case EROFS:
        return u"The disk can only be read."_s;
    default:
        return u"The system reports an error: %1$@."_s;
    }
}

base::Error fileError(int code, const QString &key, const QStringList &arguments, const QString &detail)
{
    const QString sentence = String::fill(String::localize(key), arguments);
    return base::Error{FileErrorDomain, code, sentence, detail + u": "_s + qt_error_string(code)};
}

base::Error moveErrorSaying(const QString &key, int code, const QByteArray &source,
                            const QByteArray &destination)
{
    return fileError(code, key,
                     {QString::fromUtf8(lastComponent(source)), QString::fromUtf8(lastComponent(destination)),
                      QString::fromUtf8(parentFolder(destination)), qt_error_string(code)},
                     u"move %1 to %2"_s.arg(QString::fromUtf8(source), QString::fromUtf8(destination)));
}
} // namespace

base::Error moveError(int code, const QByteArray &source, const QByteArray &destination)
{
    return moveErrorSaying(moveSentence(code), code, source, destination);
}

base::Error missingSourceError(const QByteArray &source, const QByteArray &destination)
{
    return moveErrorSaying(u"“%1$@” could not be moved because it no longer exists."_s, ENOENT, source,
                           destination);
}

base::Error createFolderError(int code, const QByteArray &folder)
{
    return fileError(code, u"The folder “%1$@” could not be created in “%2$@”: %3$@."_s,
                     {QString::fromUtf8(lastComponent(folder)), QString::fromUtf8(parentFolder(folder)),
                      qt_error_string(code)},
                     u"create "_s + QString::fromUtf8(folder));
}

base::Error writeError(int code, const QByteArray &file)
{
    return fileError(code, writeSentence(code), {qt_error_string(code)},
                     u"write "_s + QString::fromUtf8(file));
}

base::Error notAFileError(const QString &url)
{
    return fileError(EINVAL, u"“%1$@” is not the address of a file on this computer."_s, {url}, url);
}
