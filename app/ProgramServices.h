#pragma once
#include "ServiceDefaults.h"

#include <features/preferences/ServiceAccounts.h>
#include <model/ServiceStatus.h>
#include <net/Clock.h>
#include <net/secrets/SecretStore.h>
#include <sources/combined/CombinedSubtitleService.h>
#include <sources/films/FilmDatabase.h>
#include <sources/online/RestService.h>

/// Makes the network services and those that combine them with the catalogues, and installs the latter as the
/// shared services during its life. Gives them their settings, which it follows live, and the secrets of the
/// accounts, and keeps ServiceStatus up to date. Main thread only.
class ProgramServices final : public ServiceAccounts
{
public:
    struct Parts
    {
        std::shared_ptr<SubtitleService> catalogue;
        QString catalogueName; // the value of `Subtitle::service` in its results
        std::shared_ptr<MetadataService> catalogueMetadata;
        std::shared_ptr<SecretStore> secrets;
        QString starterCatalogue = {}; // the file that ships with the program
        // The names of hashed videos, which all services share.
        std::shared_ptr<VideoNames> names = std::make_shared<VideoNames>();
    };

    /// Queries wait for the secrets, but not for long: then only the catalogue is asked.
    explicit ProgramServices(const Parts &parts);
    ~ProgramServices() override;

    QString text(Item item) const override;
    bool isFixed(Item item) const override;
    void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) override;
    QString whyUnread() const override;
    void testSubtitles(std::function<void(Result<Connection>)> completion) override;
    void testFilms(std::function<void(Result<void>)> completion) override;
    Catalogue catalogue() const override;

    /// The settings in use.
    const RestSettings &restSettings() const { return m_rest->settings(); }
    /// Cancels every query and logs out; `done` is called within seconds.
    void shutDown(const std::function<void()> &done);

private:
    void installCombinedServices();
    void readSecrets();
    void takeCredentials(Credentials credentials);
    void releaseQueries();
    void noteGaps(const CombinedSubtitleService::Gaps &gaps);
    void applySettings();
    void showStatus();
    void tellOfChange();

    Parts m_parts;
    Clock m_clock; // before the services that use it
    Credentials m_credentials;
    QMap<Secret, QString> m_saved; // while the store is read
    std::optional<base::Error> m_readFailure;
    Clock::Timer m_keyringTimeout; // runs while the store does not answer
    std::shared_ptr<RestService> m_rest;
    std::shared_ptr<FilmDatabase> m_films;
    std::shared_ptr<CombinedSubtitleService> m_combined;
    std::vector<UserDefaults::Observation> m_observations;
    ServiceStatus::Value m_status;
};
