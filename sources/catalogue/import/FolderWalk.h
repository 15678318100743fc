#pragma once
#include <QDirIterator>

/// Visits a folder and its subfolders in no particular order, without following links to folders. Any thread.
class FolderWalk final
{
public:
    enum class Found
    {
        Source,       // a subtitle file or an archive, by its name
        ClosedFolder, // a folder that cannot be listed
        Other
    };

    /// Also reports `folder` itself when it cannot be listed.
    explicit FolderWalk(const QString &folder);

    bool hasNext() const { return m_isClosed || m_entries.hasNext(); }
    Found next();
    const QString &path() const { return m_path; }

private:
    QDirIterator m_entries;
    QString m_path;
    bool m_isClosed; // and not yet reported
};
