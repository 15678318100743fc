#include "DownloadFolder.h"

#include "FileErrors.h"
#include "FileWriting.h"
#include "LocalizedString.h"

#include <QDateTime>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto FolderPrefix = "get-"_L1;
} // namespace

DownloadFolder::DownloadFolder(const QString &path)
    : m_path(path), m_failureFormat(String::localize(u"The subtitle could not be stored in “%@”."_s))
{
}

QString DownloadFolder::standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/Plovendix/downloads"_L1;
}

Result<QUrl> DownloadFolder::publish(const QString &name, const QByteArray &content) const
{
    const auto failure = [this](const base::Error &reason) {
        const QString sentence = String::fill(m_failureFormat, {m_path});
        return base::Error{u"Downloads"_s, 1, sentence + u' ' + reason.localizedDescription, reason.detail};
    };
    if (const Result<void> made = makeFolders(m_path); !made)
        return failure(made.error());
    QTemporaryDir folder(m_path + u'/' + FolderPrefix + "XXXXXX"_L1);
    if (!folder.isValid())
        return failure(writeError(errno, QFile::encodeName(m_path)));
    const QString path = folder.filePath(name);
    if (const Result<void> written = writeFile(path, content); !written)
        return failure(written.error());
    folder.setAutoRemove(false);
    return QUrl::fromLocalFile(path);
}

void DownloadFolder::clearOlderThan(std::chrono::hours age) const
{
    const QDateTime limit = QDateTime::currentDateTimeUtc().addDuration(-age);
    const auto kinds = QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot | QDir::Hidden;
    const QFileInfoList folders = QDir(m_path).entryInfoList({FolderPrefix + u'*'}, kinds);
    for (const QFileInfo &folder : folders) {
        if (folder.lastModified() < limit)
            QDir(folder.filePath()).removeRecursively();
    }
}
