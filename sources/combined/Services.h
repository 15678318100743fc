#pragma once
#include "CombinedMetadataService.h"
#include "CombinedSubtitleService.h"
#include "ServiceDefaults.h"

#include <model/ServiceStatus.h>
#include <net/SystemClock.h>
#include <sources/films/FilmDatabase.h>
#include <sources/online/RestService.h>

/// Makes and owns all services of the program: the catalogues, the network services with their settings and
/// secrets, and the interfaces that controllers use. Follows the settings live. Main thread only.
class Services final
{
public:
    struct Parts
    {
        std::shared_ptr<SubtitleService> catalogue;
        QString catalogueName; // the value of `Subtitle::service` in its results
        std::shared_ptr<MetadataService> catalogueMetadata;
        std::shared_ptr<SecretStore> secrets;
    };

    /// Queries wait for the secrets, but not for long: then only the catalogue is asked.
    explicit Services(const Parts &parts);
    ~Services();

    /// Installs them as the shared services during this object's life.
    void install();
    /// Reads the secrets again after the store was changed elsewhere.
    void reloadSecrets();
    /// Uses the secret from now on and writes it to the store. If the store refuses it, it is used until the
    /// program ends. A secret in the environment takes precedence.
    void saveSecret(Secret secret, const QString &text, SecretStore::WriteCompletion completion);
    const Credentials &credentials() const { return m_credentials; }
    /// Why the store's secrets could not be read the last time, until it has taken one.
    const std::optional<base::Error> &readFailure() const { return m_readFailure; }

    RestService &rest() { return *m_rest; }
    FilmDatabase &films() { return *m_films; }
    SecretStore &secrets() { return *m_parts.secrets; }
    /// Whether searches use the network, too.
    bool asksTheNetwork() const { return m_rest->hasKey(); }
    /// Called when that, an account or the settings change, and when queries stop waiting for the secrets.
    void setObserver(std::function<void()> observer) { m_observer = std::move(observer); }
    /// Which part of the last answer is missing because the network failed.
    ServiceStatus::Missing missing() const { return m_missing; }
    /// The same as a sentence, if the service named the end of a pause.
    QString missingReason() const { return m_missingReason; }
    /// The number of rows beyond those of the last answer.
    qint64 leftOut() const { return m_leftOut; }
    /// The length of the pause that a search waits for, because of too many requests.
    std::optional<std::chrono::seconds> pause() const { return m_pause; }
    /// Called before an answer when these values may have changed.
    void setAnswerObserver(std::function<void()> observer) { m_answerObserver = std::move(observer); }
    /// Cancels every query and logs out; `done` is called within seconds.
    void shutDown(const std::function<void()> &done);

private:
    void readSecrets();
    void takeCredentials(Credentials credentials);
    void releaseQueries();
    void noteGaps(const CombinedSubtitleService::Gaps &gaps);
    void apply();

    Parts m_parts;
    SystemClock m_clock; // before the services that use it
    Credentials m_credentials;
    QMap<Secret, QString> m_saved; // since the last reading began
    std::optional<base::Error> m_readFailure;
    bool m_areSecretsRead = false;
    Clock::Timer m_keyringTimeout; // runs while the store does not answer
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
