#pragma once
#include "ArchiveMembers.h"
#include "FolderVideos.h"
#include "ImportRefusal.h"
#include "OwnCatalogue.h"
#include "SubtitleName.h"

#include <QElapsedTimer>
#include <functional>

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
    QStringList problems;  // the first few, each with its file name
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
    enum class End
    {
        Done,
        Stopped
    };

    /// `language` (three letters, or empty) is used for files whose path names none.
    CatalogueImport(OwnCatalogue &catalogue, const QString &language, const GoOn &goOn);

    /// Adds a folder with its subfolders (without following links), a subtitle file or an archive.
    Result<End> add(const QString &path);
    const ImportCounts &counts() const { return m_counts; }

private:
    Result<End> addFolder(const QString &path);
    Result<End> passEmptyFolder(const QString &path);
    Result<End> passGone(const QString &path);
    Result<End> passClosedFolder(const QString &path);
    Result<End> addFile(const QString &path);
    SourceStep stepFor(const QFileInfo &file, const SubtitleName &name,
                       const std::optional<QFileInfo> &video) const;
    /// None when the file is refused, which does not affect later imports.
    std::optional<QByteArray> contentOf(const QString &path);
    Result<End> addArchive(const QString &path);
    Result<End> endArchive(const QString &path, const QString &stamp, ArchiveMembers::End end);
    Result<bool> isKnown(const QString &path, const QString &stamp);
    void read(const QString &source, const QString &path, qint64 member, const QByteArray &bytes,
              const std::optional<QFileInfo> &video, SourceStep &step);
    Result<End> keep(SourceStep step);
    Result<void> flush();
    Result<End> carryOn();
    /// `detail` is the system's message.
    void refuse(const QString &path, ImportRefusal why, const QString &detail = {});

    OwnCatalogue &m_catalogue;
    QString m_language;
    GoOn m_goOn;
    FolderVideos m_videos;
    ImportCounts m_counts;
    QList<SourceStep> m_batch;
    qsizetype m_batchItems = 0;
    QElapsedTimer m_sinceFlush;
};
