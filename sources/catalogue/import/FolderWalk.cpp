#include "FolderWalk.h"

#include "ArchiveMembers.h"
#include "SubtitleName.h"

#include <QFile>

#include <filesystem>
#include <utility>

namespace
{
/// Tests by listing, because permissions do not show a failing disk. A folder that no longer exists does not
/// count.
bool isClosed(const QString &folder)
{
    std::error_code failure;
    const std::filesystem::directory_iterator entries(QFile::encodeName(folder).toStdString(), failure);
    return failure && failure != std::errc::no_such_file_or_directory &&
           failure != std::errc::not_a_directory;
}
} // namespace

FolderWalk::FolderWalk(const QString &folder)
    : m_entries(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories),
      m_path(folder),
      m_isClosed(isClosed(folder))
{
}

FolderWalk::Found FolderWalk::next()
{
    if (std::exchange(m_isClosed, false))
        return Found::ClosedFolder;
    m_path = m_entries.next();
    const QFileInfo info = m_entries.fileInfo();
    if (info.isDir())
        return !info.isSymLink() && isClosed(m_path) ? Found::ClosedFolder : Found::Other;
    const bool isSource = isSubtitleFileName(m_entries.fileName()) || ArchiveMembers::isArchiveName(m_path);
    return isSource ? Found::Source : Found::Other;
}
