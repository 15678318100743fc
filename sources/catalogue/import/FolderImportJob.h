#pragma once
#include "CatalogueImport.h"

#include <model/FolderImporting.h>

/// One import of a folder: counts its files, then adds them. Made on the main thread, where texts are
/// localised, and run once on another; any thread may stop it.
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

    bool findFolder();
    void countFiles();
    void readFiles();
    void take(const ImportCounts &counts);
    void fail(const QString &sentence);
    QString aboutFolder(const QString &format) const;
    QString about(const base::Error &error) const;
    bool isStopped() const { return m_waitLimits.isStopped; }

    const QString m_catalogue;
    const CatalogueErrors m_catalogueErrors;
    const QString m_folderIsGone;
    const QString m_folderIsUnreadable;
    const QHash<ImportRefusal, QString> m_refusals; // sentences with the place of a file's name
    CatalogueStore::WaitLimits m_waitLimits;
    Tell m_tell;
    FolderImportState m_state;
};
