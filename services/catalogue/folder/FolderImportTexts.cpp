#include "FolderImportTexts.h"

#include <platform/Bundle.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype LongestName = 60; // a sentence about a file is not much longer than its name

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
    const Bundle &bundle = Bundle::main();
    m_gone = bundle.localizedString(
        u"The folder “%@” is no longer there. What was added before is in the catalogue."_s);
    m_emptied = bundle.localizedString(
        u"There are no subtitle files in the folder “%@” any more. What was added before is in the catalogue."_s);
    m_unreadable = bundle.localizedString(u"You are not allowed to read the folder “%@”."_s);
    m_noSubtitle = bundle.localizedString(u"“%@” is no subtitle."_s);
    m_tooLarge = bundle.localizedString(u"“%@” is too large for a subtitle."_s);
    m_notUnpacked = bundle.localizedString(u"“%@” cannot be unpacked."_s);
    m_damagedArchive = bundle.localizedString(u"“%@” is damaged or of an unknown kind."_s);
    m_lockedArchive = bundle.localizedString(u"“%@” is protected by a password."_s);
    m_swellingArchive = bundle.localizedString(u"“%@” unpacks to far more than its size."_s);
    m_unreadableFile = bundle.localizedString(u"“%@” cannot be opened."_s);
    m_goneFile = bundle.localizedString(u"“%@” is no longer there."_s);
}

QString FolderImportTexts::folderIsGone(const QString &folder) const
{
    return QString(m_gone).replace("%@"_L1, folder.simplified());
}

QString FolderImportTexts::folderIsEmptied(const QString &folder) const
{
    return QString(m_emptied).replace("%@"_L1, folder.simplified());
}

QString FolderImportTexts::folderIsUnreadable(const QString &folder) const
{
    return QString(m_unreadable).replace("%@"_L1, folder.simplified());
}

QString FolderImportTexts::catalogueFailed(const QString &catalogue, const Error &error) const
{
    return m_catalogue.error(static_cast<CatalogueFailure>(error.code), catalogue).localizedDescription;
}

QString FolderImportTexts::refusal(const ImportCounts::Refused &refused, const QString &folder) const
{
    return QString(formatOf(refused.why)).replace("%@"_L1, shortened(pathBelow(folder, refused.path)));
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
    case ImportRefusal::SwellingArchive:
        return m_swellingArchive;
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
