#include "Services.h"

#include <base/MainQueue.h>
#include <net/Redactor.h>
#include <net/secrets/EnvironmentSecrets.h>

using namespace Qt::StringLiterals;

namespace
{
using namespace std::chrono_literals;

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
} // namespace

Services::Services(const Parts &parts)
    : m_parts(parts),
      m_credentials(environmentCredentials()),
      m_names(std::make_shared<VideoNames>()),
      m_alive(std::make_shared<Services *>(this))
{
    UserDefaults &defaults = UserDefaults::standard();
    ServiceDefaults::registerDefaults(defaults);
    m_rest = std::make_shared<RestService>(m_clock, ServiceDefaults::restSettings(defaults, m_credentials),
                                           m_names);
    m_films = std::make_shared<FilmDatabase>(m_clock, ServiceDefaults::filmSettings(defaults, m_credentials));
    for (const QString &key : ServiceDefaults::keys())
        m_observations.push_back(defaults.observe(key, [this](const QVariant &) { apply(); }));
    // Deferred, because reaching a keyring would delay the window's first appearance.
    MainQueue::shared().async([weak = std::weak_ptr(m_alive)] {
        if (const auto alive = weak.lock())
            (*alive)->readSecrets();
    });
}

Services::~Services()
{
    m_rest->setPauseObserver({});
    // The services use this object's clock and must not outlive the application object.
    if (!m_isInstalled)
        return;
    SubtitleService::setShared({});
    MetadataService::setShared({});
}

void Services::install()
{
    m_isInstalled = true;
    m_rest->followLanguages();
    const auto hasKey = [rest = m_rest] { return rest->hasKey(); };
    const auto preferences = [] { return ServiceDefaults::rankingPreferences(UserDefaults::standard()); };
    m_combined = std::make_shared<CombinedSubtitleService>(
        QList<CombinedSubtitleService::Source>{{m_parts.catalogueName, m_parts.catalogue, {}},
                                               {RestRecord::service(), m_rest, hasKey}},
        m_names, preferences);
    m_combined->setGapsObserver([weak = std::weak_ptr(m_alive)](const CombinedSubtitleService::Gaps &gaps) {
        if (const auto alive = weak.lock())
            (*alive)->noteGaps(gaps);
    });
    m_rest->setPauseObserver([this](std::optional<Clock::Duration> pause) {
        m_pause = pause ? std::optional(std::chrono::ceil<std::chrono::seconds>(*pause)) : std::nullopt;
        if (m_answerObserver)
            m_answerObserver();
    });
    if (!m_areSecretsRead) {
        m_combined->hold();
        m_keyringTimeout = m_clock.after(KeyringTimeout, [this] {
            if (m_observer)
                m_observer();
            releaseQueries();
        });
    }
    SubtitleService::setShared(m_combined);
    const auto metadata = std::make_shared<CombinedMetadataService>(QList<CombinedMetadataService::Source>{
        {m_parts.catalogueMetadata, {}}, {m_films, [films = m_films] { return films->hasKey(); }}});
    // The window sets the language only when the setting changes.
    metadata->preferredLanguage = UserDefaults::standard().string(u"languageCode"_s);
    MetadataService::setShared(metadata);
}

void Services::noteGaps(const CombinedSubtitleService::Gaps &gaps)
{
    const auto failure = gaps.failures.constFind(RestRecord::service());
    m_missing = failure == gaps.failures.constEnd() ? ServiceStatus::Missing::Nothing : missingBy(*failure);
    m_missingReason =
        m_missing == ServiceStatus::Missing::ByAPause ? failure->localizedDescription : QString();
    m_leftOut = gaps.leftOut;
    if (m_answerObserver)
        m_answerObserver();
}

void Services::releaseQueries()
{
    m_keyringTimeout.cancel();
    if (m_combined)
        m_combined->release();
}

void Services::reloadSecrets()
{
    m_saved.clear();
    readSecrets();
}

void Services::readSecrets()
{
    loadCredentials(*m_parts.secrets,
                    [weak = std::weak_ptr(m_alive)](const Credentials &credentials,
                                                    const std::optional<base::Error> &failure) {
                        const auto alive = weak.lock();
                        if (!alive)
                            return;
                        (*alive)->m_readFailure = failure;
                        (*alive)->takeCredentials(credentials);
                    });
}

void Services::takeCredentials(Credentials credentials)
{
    for (auto it = m_saved.cbegin(); it != m_saved.cend(); ++it)
        credentials.at(it.key()) = it.value();
    m_credentials = credentials;
    m_areSecretsRead = true;
    apply();
    releaseQueries();
}

void Services::saveSecret(Secret secret, const QString &text, SecretStore::WriteCompletion completion)
{
    const QString value = Credentials::cleaned(secret, text);
    hideSecret(value);
    if (!environmentSecret(secret)) {
        m_saved[secret] = value;
        m_credentials.at(secret) = value;
        apply();
    }
    m_parts.secrets->write(
        secret, value,
        [weak = std::weak_ptr(m_alive), completion = std::move(completion)](const Result<void> &kept) {
            if (const auto alive = weak.lock(); alive && kept)
                (*alive)->m_readFailure.reset();
            completion(kept);
        });
}

void Services::shutDown(const std::function<void()> &done)
{
    // Cancel queries first: the logout would wait for a connection behind them.
    if (m_combined)
        m_combined->cancelQueryTask();
    m_rest->shutDown(done);
}

void Services::apply()
{
    const UserDefaults &defaults = UserDefaults::standard();
    m_rest->setSettings(ServiceDefaults::restSettings(defaults, m_credentials));
    m_films->setSettings(ServiceDefaults::filmSettings(defaults, m_credentials));
    if (m_observer)
        m_observer();
}
