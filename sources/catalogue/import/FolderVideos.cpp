#include "FolderVideos.h"

#include "SubtitleName.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QStringList &videoPatterns()
{
    static const QStringList list{u"*.mkv"_s,  u"*.mp4"_s,  u"*.avi"_s,  u"*.m4v"_s,  u"*.mov"_s,
                                  u"*.mpg"_s,  u"*.mpeg"_s, u"*.ts"_s,   u"*.m2ts"_s, u"*.wmv"_s,
                                  u"*.webm"_s, u"*.ogm"_s,  u"*.divx"_s, u"*.flv"_s,  u"*.vob"_s};
    return list;
}
} // namespace

std::optional<QFileInfo> FolderVideos::videoFor(const QString &folder, const QStringList &names)
{
    const bool isSubtitleFolder = isSubtitleFolderName(QFileInfo(folder).fileName());
    const QList<QFileInfo> &videos = videosIn(isSubtitleFolder ? QFileInfo(folder).path() : folder);
    for (const QString &name : names) {
        const auto found = std::find_if(videos.begin(), videos.end(), [&](const QFileInfo &video) {
            return video.completeBaseName().compare(name, Qt::CaseInsensitive) == 0;
        });
        if (found != videos.end())
            return *found;
    }
    if (isSubtitleFolder && videos.size() == 1)
        return videos.first();
    return std::nullopt;
}

const QList<QFileInfo> &FolderVideos::videosIn(const QString &folder)
{
    if (folder != m_folder) {
        m_folder = folder;
        m_videos = QDir(folder).entryInfoList(videoPatterns(), QDir::Files | QDir::Readable, QDir::Name);
    }
    return m_videos;
}
