#pragma once
#include "ArchiveMembers.h"
#include "FolderVideos.h"
#include "ImportRefusal.h"
#include "OwnCatalogue.h"
#include "SubtitleName.h"

#include <QElapsedTimer>
#include <functional>

/// How far an import is.
struct ImportCounts
{
    struct Refused
    {
        QString path;
        ImportRefusal why;
    };

    qint64 files = 0;      // subtitle files and archives seen, and folders that are closed
    qint64 added = 0;      // new in the catalogue
    qint64 known = 0;      // sources that are in it and have not changed, and subtitles that came twice
    qint64 refused = 0;    // what is no subtitle, too large, damaged or closed
    qint64 unlabelled = 0; // added without a language
    QStringList problems;  // the first few, each naming its file
    std::optional<Refused> firstRefused;
    QString current; // the file that was looked at last
};

/// Enters subtitle files, folders of them and archives into the person's own catalogue, in batches: each is
/// read and packed first and then written in one short transaction, so that readers and other imports are
/// hardly held up and a kill costs one batch. Sources that are in the catalogue unchanged are passed over,
/// which is how an interrupted import goes on. What is not found any more stays in the catalogue: the disk it
/// was on may come back. One thread.
class CatalogueImport final
{
public:
    /// Asked after every file and member; false stops.
    using GoOn = std::function<bool(const ImportCounts &)>;
    enum class End
    {
        Done,
        Stopped
    };

    /// `language` (three letters, or empty) is that of files whose path names none.
    CatalogueImport(OwnCatalogue &catalogue, const QString &language, const GoOn &goOn);

    /// A folder with all below it (links to folders are not followed), a subtitle file or an archive.
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
    /// Nothing when it is refused, which says nothing about the next time.
    std::optional<QByteArray> contentOf(const QString &path);
    Result<End> addArchive(const QString &path);
    Result<End> endArchive(const QString &path, const QString &stamp, ArchiveMembers::End end);
    Result<bool> isKnown(const QString &path, const QString &stamp);
    void read(const QString &source, const QString &path, qint64 member, const QByteArray &bytes,
              const std::optional<QFileInfo> &video, SourceStep &step);
    Result<End> keep(SourceStep step);
    Result<void> flush();
    Result<End> carryOn();
    /// `detail` says it in the system's own words.
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
