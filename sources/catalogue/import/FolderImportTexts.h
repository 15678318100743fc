#pragma once
#include <sources/catalogue/CatalogueErrors.h>
#include "CatalogueImport.h"

/// The error sentences of folder imports. Made on the main thread, where texts are localised; afterwards a
/// plain value for any thread.
class FolderImportTexts final
{
public:
    FolderImportTexts();

    QString folderIsGone(const QString &folder) const;
    QString folderIsEmptied(const QString &folder) const;
    QString folderIsUnreadable(const QString &folder) const;
    /// The sentence for an Error of OwnCatalogue.
    QString catalogueFailed(const QString &catalogue, const base::Error &error) const;
    /// `folder` is the imported folder; file names are relative to it.
    QString refusal(const ImportCounts::Refused &refused, const QString &folder) const;

private:
    const QString &formatOf(ImportRefusal why) const;

    CatalogueErrors m_catalogue;
    QString m_gone;
    QString m_emptied;
    QString m_unreadable;
    QString m_noSubtitle;
    QString m_tooLarge;
    QString m_notUnpacked;
    QString m_damagedArchive;
    QString m_lockedArchive;
    QString m_archiveBomb;
    QString m_unreadableFile;
    QString m_goneFile;
};

/// The path relative to the folder, on one line; the path itself when it is outside.
QString pathBelow(const QString &folder, const QString &path);
