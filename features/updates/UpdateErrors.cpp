#include "UpdateErrors.h"

#include <base/LocalizedString.h>
#include <net/Redactor.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxDetailLength = 500;

QString connectionSentence(UpdateFault fault)
{
    switch (fault) {
    case UpdateFault::ForbiddenAddress:
        return String::localize(
            u"The service cannot be asked at the address in the settings: it must begin with https."_s);
    case UpdateFault::Offline:
        return String::localize(
            u"There is no connection to the update server. Check your network and try again."_s);
    case UpdateFault::Timeout:
        return String::localize(u"The update server did not answer in time. Try again in a moment."_s);
    case UpdateFault::Insecure:
        return String::localize(
            u"No private connection to the update server could be made. Check the date of this computer, "
            "and whether this network can be trusted."_s);
    case UpdateFault::Proxy:
        return String::localize(
            u"The proxy of this network refused the connection. Check the proxy settings of this "
            "computer."_s);
    default:
        return String::localize(
            u"The update server is not available right now. Try again in a few minutes."_s);
    }
}

QString sentence(UpdateFault fault)
{
    switch (fault) {
    case UpdateFault::NoFeed:
        return String::localize(u"What the update server sent is no list of versions. Try again later."_s);
    case UpdateFault::WebPage:
        return String::localize(
            u"Something else answered in place of the update server. If you are on a network that asks you "
            "to sign in, do that first; otherwise try again later."_s);
    case UpdateFault::CutShort:
        return String::localize(u"The list of versions did not arrive completely. Try again in a moment."_s);
    case UpdateFault::TooLarge:
        return String::localize(u"The list of versions is too long and was not read. Try again later."_s);
    case UpdateFault::Declarations:
        return String::localize(
            u"The list of versions contains something that does not belong there and was not read."_s);
    case UpdateFault::NotSigned:
        return String::localize(
            u"A new version is announced, but it is not signed by the maker of Plovendix. It is not offered "
            "here, and should not be trusted elsewhere either."_s);
    case UpdateFault::LinkNotSecure:
        return String::localize(
            u"A new version is announced, but at an address that is not secure. It is not offered here."_s);
    case UpdateFault::FeedNotSigned:
        return String::localize(
            u"The list of versions is not signed by the maker of Plovendix. It was not used. Try again later."_s);
    case UpdateFault::FeedOutdated:
        return String::localize(u"The list of versions is older than one that this computer has seen before. "
                                u"It was not used. Try "
                                "again later."_s);
    case UpdateFault::DamagedCopy:
        return String::localize(u"This copy of Plovendix is damaged and cannot check for updates. Install it "
                                "again."_s);
    case UpdateFault::NoHandler:
        return String::localize(
            u"Nothing on this computer opens web pages. The new version is at this address:"_s);
    default:
        return connectionSentence(fault);
    }
}
} // namespace

base::Error updateError(UpdateFault fault, const QString &detail)
{
    return {u"Update"_s, static_cast<int>(fault), sentence(fault), redacted(detail).left(MaxDetailLength)};
}
