#pragma once
#include <QDirIterator>

/// Goes through a folder and all below it, in no order; links to folders are not followed. Any thread.
class FolderWalk final
{
public:
    enum class Found
    {
        Source,       // a subtitle's file or an archive, by its name
        ClosedFolder, // below which nothing can be seen
        Other
    };

    /// The folder itself is told of too when it is closed.
    explicit FolderWalk(const QString &folder);

    bool hasNext() const { return m_isClosed || m_entries.hasNext(); }
    Found next();
    const QString &path() const { return m_path; }

private:
    QDirIterator m_entries;
    QString m_path;
    bool m_isClosed; // and this is still to be told
};
