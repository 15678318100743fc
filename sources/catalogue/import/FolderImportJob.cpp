#include "FolderImportJob.h"

#include <base/TerminalText.h>
#include "FolderWalk.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(folderLog, "plovendix.services.catalogue.folder")

bool isEmptied(const ImportCounts &counts)
{
    return counts.firstRefused && counts.firstRefused->why == ImportRefusal::EmptiedFolder;
}
} // namespace

FolderImportJob::FolderImportJob(const QString &catalogue, const QString &folder,
                                 std::chrono::milliseconds writerTimeout)
    : m_catalogue(catalogue)
{
    m_waitLimits.longest = writerTimeout;
    m_state.phase = Phase::Counting;
    m_state.folder = QDir::cleanPath(folder);
}

FolderImportState FolderImportJob::run(const Tell &tell)
{
    m_tell = tell;
    enter(Phase::Counting);
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

void FolderImportJob::enter(Phase phase)
{
    m_state.phase = phase;
    m_tell(m_state);
}

/// An unreadable folder would look like an empty one.
bool FolderImportJob::findFolder()
{
    std::error_code failure;
    const std::filesystem::directory_iterator entries(QFile::encodeName(m_state.folder).toStdString(),
                                                      failure);
    if (!failure)
        return true;
    const bool isGone =
        failure == std::errc::no_such_file_or_directory || failure == std::errc::not_a_directory;
    fail(isGone ? m_texts.folderIsGone(m_state.folder) : m_texts.folderIsUnreadable(m_state.folder));
    return false;
}

/// Counts the same files that CatalogueImport visits.
void FolderImportJob::countFiles()
{
    FolderWalk walk(m_state.folder);
    while (walk.hasNext() && !isStopped()) {
        if (walk.next() != FolderWalk::Found::Other)
            ++m_state.total;
        m_tell(m_state);
    }
}

void FolderImportJob::readFiles()
{
    enter(Phase::Reading);
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_catalogue, &m_waitLimits);
    if (!catalogue)
        return fail(m_texts.catalogueFailed(m_catalogue, catalogue.error()));
    CatalogueImport import(catalogue.value(), {}, [this](const ImportCounts &counts) {
        take(counts);
        m_tell(m_state);
        return !isStopped();
    });
    const Result<CatalogueImport::End> end = import.add(m_state.folder);
    take(import.counts());
    for (const QString &problem : import.counts().problems)
        qCInfo(folderLog, "%s", qUtf8Printable(terminalText(problem)));
    if (!end) {
        qCWarning(folderLog, "%s", qUtf8Printable(end.error().localizedDescription));
        fail(m_texts.catalogueFailed(m_catalogue, end.error()));
    } else if (isEmptied(import.counts())) {
        fail(m_texts.folderIsEmptied(m_state.folder));
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
        m_state.firstRefusal = m_texts.refusal(*counts.firstRefused, m_state.folder);
}

/// After stop(), failures count as cancellation.
void FolderImportJob::fail(const QString &sentence)
{
    if (isStopped())
        return;
    m_state.phase = Phase::Failed;
    m_state.failure = sentence;
}
