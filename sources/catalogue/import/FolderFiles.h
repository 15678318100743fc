#pragma once
#include <QFileInfo>
#include <QList>
#include <functional>
#include <optional>

/// What an import looks for in folders.
namespace FolderFiles
{
enum class Listing
{
    Listed,
    Gone,
    Closed // it cannot be listed
};
/// Tests by listing, because permissions do not show a failing disk.
Listing listingOf(const QString &folder);

enum class Kind
{
    Source,       // a subtitle file or an archive, by its name
    ClosedFolder, // a folder that cannot be listed
    Other
};
/// Visits the files of a folder and its subfolders in no particular order, without following links to
/// folders, until `visit` returns false; returns whether it came to the end. Also reports `folder` itself
/// when it cannot be listed. Any thread.
bool visit(const QString &folder, const std::function<bool(Kind kind, const QString &path)> &visit);

/// Finds the video beside a subtitle. Caches the last folder, because an import goes folder by folder. One
/// thread.
class Videos final
{
public:
    /// The video of a subtitle in this folder: one of these names (without extension, the first one first),
    /// or the only video in the parent of a subtitle folder.
    std::optional<QFileInfo> videoFor(const QString &folder, const QStringList &names);

private:
    QString m_folder;
    QList<QFileInfo> m_videos;
};
} // namespace FolderFiles
