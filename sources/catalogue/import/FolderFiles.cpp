#include "FolderFiles.h"

#include "ArchiveMembers.h"
#include "SubtitleName.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
using namespace FolderFiles;

Kind kindOf(const QFileInfo &entry)
{
    if (entry.isDir())
        return !entry.isSymLink() && listingOf(entry.filePath()) == Listing::Closed ? Kind::ClosedFolder
                                                                                    : Kind::Other;
    const QString name = entry.fileName();
    return isSubtitleFileName(name) || ArchiveMembers::isArchiveName(name) ? Kind::Source : Kind::Other;
}
} // namespace

FolderFiles::Listing FolderFiles::listingOf(const QString &folder)
{
    std::error_code failure;
    const std::filesystem::directory_iterator entries(QFile::encodeName(folder).toStdString(), failure);
    if (!failure)
        return Listing::Listed;
    const bool isGone =
        failure == std::errc::no_such_file_or_directory || failure == std::errc::not_a_directory;
    return isGone ? Listing::Gone : Listing::Closed;
}

bool FolderFiles::visit(const QString &folder, const std::function<bool(Kind, const QString &)> &visit)
{
    if (listingOf(folder) == Listing::Closed && !visit(Kind::ClosedFolder, folder))
        return false;
    QDirIterator entries(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (!visit(kindOf(entries.fileInfo()), path))
            return false;
    }
    return true;
}

std::optional<QFileInfo> FolderFiles::Videos::videoFor(const QString &folder, const QStringList &names)
{
    static const QStringList patterns{u"*.mkv"_s,  u"*.mp4"_s,  u"*.avi"_s,  u"*.m4v"_s,  u"*.mov"_s,
                                      u"*.mpg"_s,  u"*.mpeg"_s, u"*.ts"_s,   u"*.m2ts"_s, u"*.wmv"_s,
                                      u"*.webm"_s, u"*.ogm"_s,  u"*.divx"_s, u"*.flv"_s,  u"*.vob"_s};
    const bool isSubtitleFolder = isSubtitleFolderName(QFileInfo(folder).fileName());
    const QString place = isSubtitleFolder ? QFileInfo(folder).path() : folder;
    if (place != m_folder) {
        m_folder = place;
        m_videos = QDir(place).entryInfoList(patterns, QDir::Files | QDir::Readable, QDir::Name);
    }
    for (const QString &name : names) {
        const auto found = std::find_if(m_videos.cbegin(), m_videos.cend(), [&](const QFileInfo &video) {
            return video.completeBaseName().compare(name, Qt::CaseInsensitive) == 0;
        });
        if (found != m_videos.cend())
            return *found;
    }
    return isSubtitleFolder && m_videos.size() == 1 ? std::optional(m_videos.first()) : std::nullopt;
}
