#include "ProgramServices.h"

#include <base/MainQueue.h>
#include <net/Redactor.h>
#include <sources/catalogue/CatalogueService.h>
#include <sources/combined/CombinedMetadataService.h>

#include <QFileInfo>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto KeyringTimeout = 2s; // unlocking a keyring may need the person

ServiceStatus::Missing missingBy(const base::Error &failure)
{
    switch (kindOf(failure).value_or(ServiceFailure::Unavailable)) {
    case ServiceFailure::Offline:
        return ServiceStatus::Missing::ByBeingOffline;
    case ServiceFailure::KeyRefused:
    case ServiceFailure::LoginRefused:
        return ServiceStatus::Missing::KeyRejected;
    case ServiceFailure::UnknownLanguage:
        return ServiceStatus::Missing::ByTheLanguage;
    case ServiceFailure::TooManyRequests:
        return ServiceStatus::Missing::ByAPause;
    default:
        return ServiceStatus::Missing::ByAFailure;
    }
}

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

ProgramServices::ProgramServices(const Parts &parts) : m_parts(parts), m_credentials(environmentCredentials())
{
    UserDefaults &defaults = UserDefaults::standard();
    for (const QString &key : ServiceDefaults::registerDefaults(defaults))
        m_observations.push_back(defaults.observe(key, [this](const QVariant &) { applySettings(); }));
    m_rest = std::make_shared<RestService>(m_clock, ServiceDefaults::restSettings(defaults, m_credentials),
                                           m_parts.names);
    m_films = std::make_shared<FilmDatabase>(m_clock, ServiceDefaults::filmSettings(defaults, m_credentials));
    m_rest->followLanguages();
    m_rest->setQuotaObserver([this](const RestQuota &) { showStatus(); });
    m_rest->setPauseObserver([this](std::optional<Clock::Duration> pause) {
        m_status.pause =
            pause ? std::optional(std::chrono::ceil<std::chrono::seconds>(*pause)) : std::nullopt;
        showStatus();
    });
    installCombinedServices();
    // Reading is deferred, because reaching a keyring would delay the window's first appearance.
    m_combined->hold();
    m_keyringTimeout = m_clock.after(KeyringTimeout, [this] {
        tellOfChange();
        releaseQueries();
    });
    MainQueue::shared().async(this, [this] { readSecrets(); });
}

ProgramServices::~ProgramServices()
{
    m_rest->setQuotaObserver({});
    m_rest->setPauseObserver({});
    m_combined->setGapsObserver({});
    // The services use this object's clock and must not outlive the application object.
    SubtitleService::setShared({});
    MetadataService::setShared({});
}

void ProgramServices::installCombinedServices()
{
    const auto preferences = [] { return ServiceDefaults::rankingPreferences(UserDefaults::standard()); };
    m_combined = std::make_shared<CombinedSubtitleService>(
        QList<CombinedSubtitleService::Source>{
            {m_parts.catalogueName, m_parts.catalogue, {}},
            {RestPage::service(), m_rest, [rest = m_rest] { return rest->hasKey(); }}},
        m_parts.names, preferences);
    m_combined->setGapsObserver([this](const CombinedSubtitleService::Gaps &gaps) { noteGaps(gaps); });
    SubtitleService::setShared(m_combined);
    const auto metadata = std::make_shared<CombinedMetadataService>(QList<CombinedMetadataService::Source>{
        {m_parts.catalogueMetadata, {}}, {m_films, [films = m_films] { return films->hasKey(); }}});
    // The window sets the language only when the setting changes.
    metadata->preferredLanguage = UserDefaults::standard().string(u"languageCode"_s);
    MetadataService::setShared(metadata);
}

void ProgramServices::noteGaps(const CombinedSubtitleService::Gaps &gaps)
{
    const auto failure = gaps.failures.constFind(RestPage::service());
    const bool isMissing = failure != gaps.failures.constEnd();
    m_status.missing = isMissing ? missingBy(*failure) : ServiceStatus::Missing::Nothing;
    m_status.reason =
        m_status.missing == ServiceStatus::Missing::ByAPause ? failure->localizedDescription : QString();
    m_status.leftOut = gaps.leftOut;
    showStatus();
}

void ProgramServices::showStatus()
{
    m_status.asksTheNetwork = m_rest->hasKey();
    m_status.remainingDownloads = m_rest->quota().remaining;
    ServiceStatus::shared().setValue(m_status);
}

void ProgramServices::tellOfChange()
{
    showStatus();
    Q_EMIT changed();
}

void ProgramServices::applySettings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    m_rest->setSettings(ServiceDefaults::restSettings(defaults, m_credentials));
    m_films->setSettings(ServiceDefaults::filmSettings(defaults, m_credentials));
    tellOfChange();
}

void ProgramServices::readSecrets()
{
    loadCredentials(*m_parts.secrets, [self = QPointer(this)](const Credentials &credentials,
                                                              const std::optional<base::Error> &failure) {
        if (!self)
            return;
        self->m_readFailure = failure;
        self->takeCredentials(credentials);
    });
}

void ProgramServices::takeCredentials(Credentials credentials)
{
    for (auto it = m_saved.cbegin(); it != m_saved.cend(); ++it)
        credentials.at(it.key()) = it.value();
    m_credentials = credentials;
    applySettings();
    releaseQueries();
}

void ProgramServices::releaseQueries()
{
    m_keyringTimeout.reset();
    m_combined->release();
}

QString ProgramServices::text(Item item) const
{
    Credentials credentials = m_credentials;
    return credentials.at(secretOf(item));
}

bool ProgramServices::isFixed(Item item) const
{
    return environmentSecret(secretOf(item)).has_value();
}

void ProgramServices::setText(Item item, const QString &text, std::function<void(Result<void>)> completion)
{
    const Secret secret = secretOf(item);
    const QString value = Credentials::cleaned(secret, text);
    hideSecret(value);
    if (!isFixed(item)) {
        m_saved[secret] = value;
        m_credentials.at(secret) = value;
        applySettings();
    }
    m_parts.secrets->write(
        secret, value, [self = QPointer(this), completion = std::move(completion)](const Result<void> &kept) {
            if (self && kept)
                self->m_readFailure.reset();
            completion(kept);
        });
}

QString ProgramServices::whyUnread() const
{
    return m_readFailure ? m_readFailure->localizedDescription : QString();
}

void ProgramServices::testSubtitles(std::function<void(Result<Connection>)> completion)
{
    m_rest->testConnection([completion = std::move(completion)](const Result<RestReport> &report) {
        completion(report ? Result<Connection>(Connection{report->isLoggedIn, report->quota.allowed,
                                                          report->quota.remaining})
                          : Result<Connection>(report.error()));
    });
}

void ProgramServices::testFilms(std::function<void(Result<void>)> completion)
{
    m_films->testKey(std::move(completion));
}

ServiceAccounts::Catalogue ProgramServices::catalogue() const
{
    const QFileInfo own(standardOwnCataloguePath());
    const QFileInfo file = own.exists() ? own : QFileInfo(m_parts.starterCatalogue);
    return {file.filePath(), file.size(), own.exists()};
}

void ProgramServices::shutDown(const std::function<void()> &done)
{
    // Cancel queries first: the logout would wait for a connection behind them.
    m_combined->cancelQueryTask();
    m_rest->shutDown(done);
}
