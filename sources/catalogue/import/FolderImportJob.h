#pragma once
#include "FolderImportTexts.h"

#include <model/FolderImporting.h>
#include "CatalogueStore.h"

#include <functional>

/// One import of a folder: counts its files, then adds them. Made on the main thread and run once on another;
/// any thread may stop it.
class FolderImportJob final
{
public:
    using Tell = std::function<void(const FolderImportState &)>;

    /// `writerTimeout` is the longest wait for another writer of the catalogue.
    FolderImportJob(const QString &catalogue, const QString &folder, std::chrono::milliseconds writerTimeout);

    /// Reports its progress after every file, on this thread, and returns how it ended. The catalogue is
    /// closed by then.
    FolderImportState run(const Tell &tell);
    void stop() { m_waitLimits.isStopped = true; }

private:
    using Phase = FolderImportState::Phase;

    void enter(Phase phase);
    bool findFolder();
    void countFiles();
    void readFiles();
    void take(const ImportCounts &counts);
    void fail(const QString &sentence);
    bool isStopped() const { return m_waitLimits.isStopped; }

    const QString m_catalogue;
    const FolderImportTexts m_texts;
    CatalogueStore::WaitLimits m_waitLimits;
    Tell m_tell;
    FolderImportState m_state;
};
