#include "FolderImportTexts.h"

#include <base/LocalizedString.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype LongestName = 60; // limits a sentence's length by that of the name in it

QString shortened(const QString &name)
{
    if (name.size() <= LongestName)
        return name;
    constexpr qsizetype Part = LongestName / 2;
    return name.left(Part) + u'…' + name.right(Part);
}
} // namespace

QString pathBelow(const QString &folder, const QString &path)
{
    const QString root = folder.endsWith(u'/') ? folder : folder + u'/';
    return (path.startsWith(root) ? path.mid(root.size()) : path).simplified();
}

FolderImportTexts::FolderImportTexts()
{
    m_gone =
        String::localize(u"The folder “%@” is no longer there. What was added before is in the catalogue."_s);
    m_emptied = String::localize(
        u"There are no subtitle files in the folder “%@” any more. What was added before is in the catalogue."_s);
    m_unreadable = String::localize(u"You are not allowed to read the folder “%@”."_s);
    m_noSubtitle = String::localize(u"“%@” is no subtitle."_s);
    m_tooLarge = String::localize(u"“%@” is too large for a subtitle."_s);
    m_notUnpacked = String::localize(u"“%@” cannot be unpacked."_s);
    m_damagedArchive = String::localize(u"“%@” is damaged or of an unknown kind."_s);
    m_lockedArchive = String::localize(u"“%@” is protected by a password."_s);
    m_archiveBomb = String::localize(u"“%@” unpacks to far more than its size."_s);
    m_unreadableFile = String::localize(u"“%@” cannot be opened."_s);
    m_goneFile = String::localize(u"“%@” is no longer there."_s);
}

QString FolderImportTexts::folderIsGone(const QString &folder) const
{
    return String::fill(m_gone, {folder.simplified()});
}

QString FolderImportTexts::folderIsEmptied(const QString &folder) const
{
    return String::fill(m_emptied, {folder.simplified()});
}

QString FolderImportTexts::folderIsUnreadable(const QString &folder) const
{
    return String::fill(m_unreadable, {folder.simplified()});
}

QString FolderImportTexts::catalogueFailed(const QString &catalogue, const base::Error &error) const
{
    return m_catalogue.error(static_cast<CatalogueFailure>(error.code), catalogue).localizedDescription;
}

QString FolderImportTexts::refusal(const ImportCounts::Refused &refused, const QString &folder) const
{
    return String::fill(formatOf(refused.why), {shortened(pathBelow(folder, refused.path))});
}

const QString &FolderImportTexts::formatOf(ImportRefusal why) const
{
    switch (why) {
    case ImportRefusal::TooLarge:
        return m_tooLarge;
    case ImportRefusal::NotUnpacked:
        return m_notUnpacked;
    case ImportRefusal::DamagedArchive:
        return m_damagedArchive;
    case ImportRefusal::LockedArchive:
        return m_lockedArchive;
    case ImportRefusal::ArchiveBomb:
        return m_archiveBomb;
    case ImportRefusal::Unreadable:
    case ImportRefusal::ClosedFolder:
        return m_unreadableFile;
    case ImportRefusal::Gone:
        return m_goneFile;
    case ImportRefusal::EmptiedFolder:
        return m_emptied;
    case ImportRefusal::NoSubtitle:
    case ImportRefusal::OtherKind:
        break;
    }
    return m_noSubtitle;
}
