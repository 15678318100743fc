#pragma once
#include <sources/catalogue/CatalogueErrors.h>
#include "CatalogueImport.h"

/// The sentences for what goes wrong while a folder is imported. Made on the main thread, where texts are
/// localised; a plain value that any thread may use afterwards.
class FolderImportTexts final
{
public:
    FolderImportTexts();

    QString folderIsGone(const QString &folder) const;
    QString folderIsEmptied(const QString &folder) const;
    QString folderIsUnreadable(const QString &folder) const;
    /// What an Error of OwnCatalogue means to a person.
    QString catalogueFailed(const QString &catalogue, const Error &error) const;
    /// `folder` is the one that is imported: files are named as seen from there.
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

/// A path as seen from the folder, on one line; the path itself when it is not below it.
QString pathBelow(const QString &folder, const QString &path);
