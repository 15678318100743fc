#include "FolderImportJob.h"

#include <base/LocalizedString.h>
#include <base/TerminalText.h>

#include <QDir>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(folderLog, "plovendix.services.catalogue.folder")

/// The path as seen from the folder, on one line; the path itself when it is outside.
QString pathBelow(const QString &folder, const QString &path)
{
    const QString root = folder.endsWith(u'/') ? folder : folder + u'/';
    return (path.startsWith(root) ? path.mid(root.size()) : path).simplified();
}

/// Limits a sentence's length by that of the name in it.
QString shortened(const QString &name)
{
    constexpr qsizetype LongestName = 60;
    constexpr qsizetype Part = LongestName / 2;
    return name.size() <= LongestName ? name : name.left(Part) + u'…' + name.right(Part);
}

QHash<ImportRefusal, QString> refusalSentences()
{
    using enum ImportRefusal;
    const QString noSubtitle = String::localize(u"“%@” is no subtitle."_s);
    const QString unreadable = String::localize(u"“%@” cannot be opened."_s);
    return {
        {NoSubtitle, noSubtitle},
        {OtherKind, noSubtitle},
        {TooLarge, String::localize(u"“%@” is too large for a subtitle."_s)},
        {NotUnpacked, String::localize(u"“%@” cannot be unpacked."_s)},
        {DamagedArchive, String::localize(u"“%@” is damaged or of an unknown kind."_s)},
        {LockedArchive, String::localize(u"“%@” is protected by a password."_s)},
        {ArchiveBomb, String::localize(u"“%@” unpacks to far more than its size."_s)},
        {Unreadable, unreadable},
        {ClosedFolder, unreadable},
        {Gone, String::localize(u"“%@” is no longer there."_s)},
        {EmptiedFolder,
         String::localize(
             u"There are no subtitle files in the folder “%@” any more. What was added before is in the catalogue."_s)},
    };
}
} // namespace

FolderImportJob::FolderImportJob(const QString &catalogue, const QString &folder,
                                 std::chrono::milliseconds writerTimeout)
    : m_catalogue(catalogue),
      m_folderIsGone(String::localize(
          u"The folder “%@” is no longer there. What was added before is in the catalogue."_s)),
      m_folderIsUnreadable(String::localize(u"You are not allowed to read the folder “%@”."_s)),
      m_refusals(refusalSentences())
{
    m_waitLimits.longest = writerTimeout;
    m_state.phase = Phase::Counting;
    m_state.folder = QDir::cleanPath(folder);
}

FolderImportState FolderImportJob::run(const Tell &tell)
{
    m_tell = tell;
    m_tell(m_state);
    if (findFolder())
        countFiles();
    // Without files the import still runs if there is a catalogue, which knows whether files were there
    // before.
    const bool hasWork = m_state.total > 0 || QFileInfo::exists(m_catalogue);
    if (m_state.phase == Phase::Counting && hasWork && !isStopped())
        readFiles();
    if (m_state.phase != Phase::Failed)
        m_state.phase = isStopped() ? Phase::Stopped : Phase::Finished;
    return m_state;
}

/// An unreadable folder would look like an empty one.
bool FolderImportJob::findFolder()
{
    const FolderFiles::Listing listing = FolderFiles::listingOf(m_state.folder);
    if (listing == FolderFiles::Listing::Listed)
        return true;
    fail(aboutFolder(listing == FolderFiles::Listing::Gone ? m_folderIsGone : m_folderIsUnreadable));
    return false;
}

/// Counts the same files that CatalogueImport visits.
void FolderImportJob::countFiles()
{
    FolderFiles::visit(m_state.folder, [this](FolderFiles::Kind kind, const QString &) {
        if (kind != FolderFiles::Kind::Other)
            ++m_state.total;
        m_tell(m_state);
        return !isStopped();
    });
}

void FolderImportJob::readFiles()
{
    m_state.phase = Phase::Reading;
    m_tell(m_state);
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_catalogue, &m_waitLimits);
    if (!catalogue)
        return fail(about(catalogue.error()));
    CatalogueImport import(catalogue.value(), {}, [this](const ImportCounts &counts) {
        take(counts);
        m_tell(m_state);
        return !isStopped();
    });
    const Result<bool> end = import.add(m_state.folder);
    const ImportCounts &counts = import.counts();
    take(counts);
    for (const QString &problem : counts.problems)
        qCInfo(folderLog, "%s", qUtf8Printable(terminalText(problem)));
    if (!end) {
        qCWarning(folderLog, "%s", qUtf8Printable(end.error().localizedDescription));
        fail(about(end.error()));
    } else if (counts.firstRefused && counts.firstRefused->why == ImportRefusal::EmptiedFolder) {
        fail(aboutFolder(m_refusals[ImportRefusal::EmptiedFolder]));
    } else if (!isStopped()) {
        findFolder(); // the folder may have vanished during the import
    }
}

void FolderImportJob::take(const ImportCounts &counts)
{
    m_state.files = counts.files;
    m_state.added = counts.added;
    m_state.known = counts.known;
    m_state.refused = counts.refused;
    m_state.current = pathBelow(m_state.folder, counts.current);
    if (counts.firstRefused && m_state.firstRefusal.isEmpty())
        m_state.firstRefusal =
            String::fill(m_refusals[counts.firstRefused->why],
                         {shortened(pathBelow(m_state.folder, counts.firstRefused->path))});
}

QString FolderImportJob::aboutFolder(const QString &format) const
{
    return String::fill(format, {m_state.folder.simplified()});
}

QString FolderImportJob::about(const base::Error &error) const
{
    const auto failure = static_cast<CatalogueFailure>(error.code);
    return m_catalogueErrors.error(failure, m_catalogue).localizedDescription;
}

/// After stop(), failures count as cancellation.
void FolderImportJob::fail(const QString &sentence)
{
    if (isStopped())
        return;
    m_state.phase = Phase::Failed;
    m_state.failure = sentence;
}
