#include "UpdateChoice.h"

#include "AppcastSignature.h"
#include "ReleaseVersion.h"
#include "UpdateErrors.h"

#include <QUrl>

#include <algorithm>

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

std::optional<UpdateFault> whatIsWrongWith(const AppcastItem &item, const InstalledProgram &installed)
{
    if (!AppcastSignature::isValid(installed.identifier, item, installed.publicKey))
        return UpdateFault::NotSigned;
    const QUrl link(item.link, QUrl::StrictMode);
    const bool secure = link.isValid() && link.scheme() == QLatin1StringView("https") &&
                        !link.host().isEmpty() && link.userInfo().isEmpty();
    return secure ? std::nullopt : std::optional(UpdateFault::LinkNotSecure);
}

bool knowsItself(const InstalledProgram &installed)
{
    return ReleaseVersion::parse(installed.version) && !installed.identifier.isEmpty() &&
           installed.publicKey.size() == AppcastSignature::KeyBytes;
}
} // namespace

Result<QDateTime> checkedDate(const AppcastFeed &feed, const InstalledProgram &installed,
                              const QDateTime &newestSeen)
{
    if (!knowsItself(installed))
        return updateError(UpdateFault::DamagedCopy, installed.version);
    const QDateTime date = QDateTime::fromString(feed.date, Qt::ISODate);
    if (!date.isValid() || !AppcastSignature::isValid(installed.identifier, feed, installed.publicKey))
        return updateError(UpdateFault::FeedNotSigned, feed.date);
    if (newestSeen.isValid() && date < newestSeen)
        return updateError(UpdateFault::FeedOutdated, feed.date);
    return date;
}

Result<std::optional<AppcastItem>> chooseUpdate(const QList<AppcastItem> &items,
                                                const InstalledProgram &installed)
{
    if (!knowsItself(installed))
        return updateError(UpdateFault::DamagedCopy, installed.version);
    const auto version = ReleaseVersion::parse(installed.version);
    std::optional<base::Error> refusal;
    for (const Candidate &candidate : newerThan(*version, items)) {
        const auto wrong = whatIsWrongWith(candidate.item, installed);
        if (!wrong)
            return std::optional(candidate.item);
        if (!refusal)
            refusal = updateError(*wrong, candidate.item.version);
    }
    if (refusal)
        return *refusal;
    return std::optional<AppcastItem>();
}
