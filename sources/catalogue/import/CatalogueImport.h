#pragma once
#include "ArchiveMembers.h"
#include "FolderFiles.h"
#include "OwnCatalogue.h"
#include "SubtitleName.h"

#include <QElapsedTimer>

/// Why a file was not entered.
enum class ImportRefusal
{
    NoSubtitle,
    TooLarge,
    NotUnpacked,
    DamagedArchive,
    LockedArchive, // by a password
    ArchiveBomb,   // unpacks to more than an archive of its size should
    Unreadable,
    Gone,
    EmptiedFolder, // all files that were imported from it are gone
    ClosedFolder,  // its content cannot be listed
    OtherKind      // neither a subtitle nor an archive
};

/// The progress of an import.
struct ImportCounts
{
    struct Refused
    {
        QString path;
        ImportRefusal why;
    };

    qint64 files = 0;      // subtitle files and archives seen, and unreadable folders
    qint64 added = 0;      // new in the catalogue
    qint64 known = 0;      // unchanged sources, and subtitles that occurred twice
    qint64 refused = 0;    // not a subtitle, too large, damaged or unreadable
    qint64 unlabelled = 0; // added without a language
    QStringList problems;  // the first few, each with its file name, for the terminal
    std::optional<Refused> firstRefused;
    QString current; // the last file that was read
};

/// Imports subtitle files, folders and archives into the person's own catalogue in batches: each batch is
/// read and packed first and then written in one short transaction, so that readers and other imports hardly
/// wait and a kill loses one batch. Unchanged sources are skipped, so an interrupted import continues.
/// Subtitles of files that are not found stay in the catalogue, because their disk may come back. One thread.
class CatalogueImport final
{
public:
    /// Called after every file and member; returns false to stop.
    using GoOn = std::function<bool(const ImportCounts &)>;

    /// `language` (three letters, or empty) is used for files whose path names none.
    CatalogueImport(OwnCatalogue &catalogue, const QString &language, const GoOn &goOn);

    /// Adds a folder with its subfolders (without following links), a subtitle file or an archive. Returns
    /// false when it was stopped.
    Result<bool> add(const QString &path);
    const ImportCounts &counts() const { return m_counts; }

private:
    // These return whether the import goes on, and throw SQLite::Exception.
    bool addPath(const QString &path);
    bool addFolder(const QString &path);
    bool addFile(const QString &path);
    bool addArchive(const QString &path);
    bool endArchive(const QString &path, const QString &stamp, ArchiveMembers::End end);
    bool keep(SourceStep step);
    bool goOn() const { return m_goOn(m_counts); }

    SourceStep stepFor(const QFileInfo &file, const SubtitleName &name,
                       const std::optional<QFileInfo> &video) const;
    /// None when the file is refused, which does not affect later imports.
    std::optional<QByteArray> contentOf(const QString &path);
    bool isKnown(const QString &path, const QString &stamp);
    void read(const QString &source, const QString &path, qint64 member, const QByteArray &bytes,
              const std::optional<QFileInfo> &video, SourceStep &step);
    void flush();
    /// `detail` is the system's message.
    void refuse(const QString &path, ImportRefusal why, const QString &detail = {});

    OwnCatalogue &m_catalogue;
    QString m_language;
    GoOn m_goOn;
    FolderFiles::Videos m_videos;
    ImportCounts m_counts;
    QList<SourceStep> m_batch;
    qsizetype m_batchItems = 0;
    QElapsedTimer m_sinceFlush;
};
