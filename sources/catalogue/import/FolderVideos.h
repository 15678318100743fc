#pragma once
#include <QFileInfo>
#include <QList>
#include <optional>

/// The videos that lie beside subtitles. Remembers the folder looked at last, because an import goes folder
/// by folder. One thread.
class FolderVideos final
{
public:
    /// The video of a subtitle in this folder: one of these names (without extension, the first counts), or
    /// the only one in the folder around a folder for subtitles.
    std::optional<QFileInfo> videoFor(const QString &folder, const QStringList &names);

private:
    const QList<QFileInfo> &videosIn(const QString &folder);

    QString m_folder;
    QList<QFileInfo> m_videos;
};
