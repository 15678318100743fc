#pragma once
#include <QFileInfo>
#include <QList>
#include <optional>

/// Finds the video beside a subtitle. Caches the last folder, because an import goes folder by folder. One
/// thread.
class FolderVideos final
{
public:
    /// The video of a subtitle in this folder: one of these names (without extension, the first one first),
    /// or the only video in the parent of a subtitle folder.
    std::optional<QFileInfo> videoFor(const QString &folder, const QStringList &names);

private:
    const QList<QFileInfo> &videosIn(const QString &folder);

    QString m_folder;
    QList<QFileInfo> m_videos;
};
