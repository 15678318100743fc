#pragma once
#include "CombinedMetadataService.h"
#include "CombinedSubtitleService.h"
#include "ServiceDefaults.h"

#include <model/ServiceStatus.h>
#include <net/SystemClock.h>
#include <sources/films/FilmDatabase.h>
#include <sources/online/RestService.h>

/// All services of the program, put together by the process entry and kept until it ends: the catalogues, the
/// network services with their settings and secrets, and what the controllers see of them. Follows the
/// settings live. Main thread only.
class Services final
{
public:
    struct Parts
    {
        std::shared_ptr<SubtitleService> catalogue;
        QString catalogueName; // what `Subtitle::service` says of its results
        std::shared_ptr<MetadataService> catalogueMetadata;
        std::shared_ptr<SecretStore> secrets;
    };

    /// Queries wait until the secrets are read, but not for long: then they go to the catalogue alone.
    explicit Services(const Parts &parts);
    ~Services();

    /// Makes them the services that everyone asks, until this goes.
    void install();
    /// Reads the secrets again, after somebody has changed them in the store.
    void reloadSecrets();
    /// Uses the secret from now on and keeps it in the store. What the store does not take is used until the
    /// program ends. One that the environment gives stays in use.
    void saveSecret(Secret secret, const QString &text, SecretStore::WriteCompletion completion);
    const Credentials &credentials() const { return m_credentials; }
    /// Why the store's secrets could not be read the last time, until it has taken one.
    const std::optional<Error> &readFailure() const { return m_readFailure; }

    RestService &rest() { return *m_rest; }
    FilmDatabase &films() { return *m_films; }
    SecretStore &secrets() { return *m_parts.secrets; }
    /// Whether searches go beyond the catalogues on this machine.
    bool asksTheNetwork() const { return m_rest->hasKey(); }
    /// Called whenever that, an account or the settings have changed, and when searches wait no longer to
    /// learn it.
    void setObserver(std::function<void()> observer) { m_observer = std::move(observer); }
    /// What the last answer lacks because the network failed.
    ServiceStatus::Missing missing() const { return m_missing; }
    /// The same as a sentence, where the service named the time of a pause.
    QString missingReason() const { return m_missingReason; }
    /// How many rows there are beyond those of the last answer.
    qint64 leftOut() const { return m_leftOut; }
    /// How long a search waits, while it does, because the service gets too many requests.
    std::optional<std::chrono::seconds> pause() const { return m_pause; }
    /// Called when these may have changed, before the answer is given.
    void setAnswerObserver(std::function<void()> observer) { m_answerObserver = std::move(observer); }
    /// Drops every query and logs out; `done` comes within seconds.
    void shutDown(const std::function<void()> &done);

private:
    void readSecrets();
    void takeCredentials(Credentials credentials);
    void releaseQueries();
    void noteGaps(const CombinedSubtitleService::Gaps &gaps);
    void apply();

    Parts m_parts;
    SystemClock m_clock; // before the services that go by it
    Credentials m_credentials;
    QMap<Secret, QString> m_saved; // since the last reading began
    std::optional<Error> m_readFailure;
    bool m_areSecretsRead = false;
    Clock::Timer m_keyringTimeout; // with a store that does not answer
    std::shared_ptr<VideoNames> m_names;
    std::shared_ptr<RestService> m_rest;
    std::shared_ptr<FilmDatabase> m_films;
    std::shared_ptr<CombinedSubtitleService> m_combined;
    std::vector<UserDefaults::Observation> m_observations;
    std::function<void()> m_observer;
    ServiceStatus::Missing m_missing = ServiceStatus::Missing::Nothing;
    QString m_missingReason;
    qint64 m_leftOut = 0;
    std::optional<std::chrono::seconds> m_pause;
    std::function<void()> m_answerObserver;
    bool m_isInstalled = false;
    std::shared_ptr<Services *> m_alive;
};
