#include "ImportRefusal.h"

using namespace Qt::StringLiterals;

QString textOf(ImportRefusal why)
{
    switch (why) {
    case ImportRefusal::NoSubtitle:
        return u"is no subtitle"_s;
    case ImportRefusal::TooLarge:
        return u"is too large for a subtitle"_s;
    case ImportRefusal::NotUnpacked:
        return u"cannot be unpacked"_s;
    case ImportRefusal::DamagedArchive:
        return u"is damaged or not an archive that can be read"_s;
    case ImportRefusal::LockedArchive:
        return u"is protected by a password"_s;
    case ImportRefusal::ArchiveBomb:
        return u"unpacks to more than an archive of its size should"_s;
    case ImportRefusal::Unreadable:
        return u"cannot be read"_s;
    case ImportRefusal::Gone:
        return u"is not there"_s;
    case ImportRefusal::EmptiedFolder:
        return u"holds no subtitle files any more; what came from it stays in the catalogue"_s;
    case ImportRefusal::ClosedFolder:
        return u"is a folder that cannot be read"_s;
    case ImportRefusal::OtherKind:
        break;
    }
    return u"is neither a subtitle nor an archive"_s;
}
