#include "ProgramAccounts.h"

#include <net/secrets/EnvironmentSecrets.h>
#include <sources/catalogue/CatalogueService.h>

#include <QFileInfo>

namespace
{
Secret secretOf(ServiceAccounts::Item item)
{
    switch (item) {
    case ServiceAccounts::Item::SubtitleKey:
        return Secret::SubtitleKey;
    case ServiceAccounts::Item::SubtitlePassword:
        return Secret::SubtitlePassword;
    case ServiceAccounts::Item::MetadataKey:
        break;
    }
    return Secret::MetadataKey;
}
} // namespace

ProgramAccounts::ProgramAccounts(Services &services, const QString &starterCatalogue)
    : m_services(services), m_starterCatalogue(starterCatalogue)
{
}

QString ProgramAccounts::text(Item item) const
{
    Credentials credentials = m_services.credentials();
    return credentials.at(secretOf(item));
}

bool ProgramAccounts::isFixed(Item item) const
{
    return environmentSecret(secretOf(item)).has_value();
}

void ProgramAccounts::setText(Item item, const QString &text, std::function<void(Result<void>)> completion)
{
    m_services.saveSecret(secretOf(item), text, std::move(completion));
}

QString ProgramAccounts::whyUnread() const
{
    const std::optional<base::Error> &failure = m_services.readFailure();
    return failure ? failure->localizedDescription : QString();
}

void ProgramAccounts::testSubtitles(std::function<void(Result<Connection>)> completion)
{
    m_services.rest().testConnection([completion = std::move(completion)](const Result<RestReport> &report) {
        completion(report ? Result<Connection>(Connection{report->isLoggedIn, report->quota.allowed,
                                                          report->quota.remaining})
                          : Result<Connection>(report.error()));
    });
}

void ProgramAccounts::testFilms(std::function<void(Result<void>)> completion)
{
    m_services.films().testKey(std::move(completion));
}

ServiceAccounts::Catalogue ProgramAccounts::catalogue() const
{
    const QFileInfo own(standardOwnCataloguePath());
    if (own.exists())
        return {own.filePath(), own.size(), true};
    const QFileInfo starter(m_starterCatalogue);
    return {starter.filePath(), starter.size(), false};
}
