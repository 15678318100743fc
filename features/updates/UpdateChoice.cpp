#include "UpdateChoice.h"

#include "AppcastSignature.h"
#include "ReleaseVersion.h"

#include <base/Bundle.h>
#include <base/LocalizedString.h>

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
struct Candidate
{
    ReleaseVersion version;
    AppcastItem item;
};

QList<Candidate> newerThan(const ReleaseVersion &installed, const QList<AppcastItem> &items)
{
    QList<Candidate> newer;
    for (const AppcastItem &item : items) {
        const auto version = ReleaseVersion::parse(item.version);
        if (version && *version > installed && (installed.isPreRelease() || !version->isPreRelease()))
            newer += Candidate{*version, item};
    }
    std::stable_sort(newer.begin(), newer.end(), [](const Candidate &one, const Candidate &other) {
        return one.version > other.version;
    });
    return newer;
}

Result<void> checkItem(const AppcastItem &item, const InstalledProgram &installed)
{
    if (!AppcastSignature::isValid(installed.identifier, item, installed.publicKey))
        return Appcast::error(String::localize(u"A new version is announced, but it is not signed by the "
                                               u"maker of Plovendix. It is not offered "
                                               "here, and should not be trusted elsewhere either."_s),
                              u"a version is not signed: "_s + item.version);
    const QUrl link(item.link, QUrl::StrictMode);
    if (!link.isValid() || link.scheme() != "https"_L1 || link.host().isEmpty() || !link.userInfo().isEmpty())
        return Appcast::error(
            String::localize(
                u"A new version is announced, but at an address that is not secure. It is not offered here."_s),
            u"a version has no secure address: "_s + item.version);
    return {};
}

/// The installed version; an Error when this copy of the program lacks what a check needs.
Result<ReleaseVersion> versionOf(const InstalledProgram &installed)
{
    const auto version = ReleaseVersion::parse(installed.version);
    if (version && !installed.identifier.isEmpty() &&
        installed.publicKey.size() == AppcastSignature::KeyBytes)
        return *version;
    return Appcast::error(
        String::localize(
            u"This copy of Plovendix is damaged and cannot check for updates. Install it again."_s),
        u"no version, identifier or key: "_s + installed.version);
}
} // namespace

InstalledProgram InstalledProgram::ofBundle(const Bundle &bundle)
{
    const auto text = [&bundle](const QString &key) {
        return bundle.objectForInfoDictionaryKey(key).toString();
    };
    return {text(u"CFBundleIdentifier"_s), text(u"CFBundleShortVersionString"_s),
            QByteArray::fromBase64(text(u"SUPublicEDKey"_s).toLatin1())};
}

Result<QDateTime> checkedDate(const AppcastFeed &feed, const InstalledProgram &installed,
                              const QDateTime &newestSeen)
{
    if (const auto version = versionOf(installed); !version)
        return version.error();
    const QDateTime date = QDateTime::fromString(feed.date, Qt::ISODate);
    if (!date.isValid() || !AppcastSignature::isValid(installed.identifier, feed, installed.publicKey))
        return Appcast::error(
            String::localize(
                u"The list of versions is not signed by the maker of Plovendix. It was not used. Try again later."_s),
            u"the feed is not signed: "_s + feed.date);
    if (newestSeen.isValid() && date < newestSeen)
        return Appcast::error(
            String::localize(u"The list of versions is older than one that this computer has seen before. "
                             "It was not used. Try again later."_s),
            u"the feed is older than the last one: "_s + feed.date);
    return date;
}

Result<std::optional<AppcastItem>> chooseUpdate(const QList<AppcastItem> &items,
                                                const InstalledProgram &installed)
{
    const auto version = versionOf(installed);
    if (!version)
        return version.error();
    std::optional<base::Error> refusal; // of the newest
    for (const Candidate &candidate : newerThan(*version, items)) {
        const auto checked = checkItem(candidate.item, installed);
        if (checked)
            return std::optional(candidate.item);
        if (!refusal)
            refusal = checked.error();
    }
    if (refusal)
        return *refusal;
    return std::optional<AppcastItem>();
}
