#include "Services.h"

Services::Services(const Parts &parts)
    : m_parts(parts), m_names(std::make_shared<VideoNames>()), m_alive(std::make_shared<Services *>(this))
{
    UserDefaults &defaults = UserDefaults::standard();
    ServiceDefaults::registerDefaults(defaults);
    m_rest = std::make_shared<RestService>(m_clock, ServiceDefaults::restSettings(defaults, m_credentials),
                                           m_names);
    m_films = std::make_shared<FilmDatabase>(m_clock, ServiceDefaults::filmSettings(defaults, m_credentials));
    for (const QString &key : ServiceDefaults::keys())
        m_observations.push_back(defaults.observe(key, [this](const QVariant &) { apply(); }));
    reloadSecrets();
}

Services::~Services()
{
    // They go by our clock and must not outlive the application object.
    if (!m_isInstalled)
        return;
    SubtitleService::setShared({});
    MetadataService::setShared({});
}

void Services::install()
{
    m_isInstalled = true;
    const auto hasKey = [rest = m_rest] { return rest->hasKey(); };
    const auto preferences = [rest = m_rest] { return rest->settings().preferences; };
    SubtitleService::setShared(std::make_shared<CombinedSubtitleService>(
        QList<CombinedSubtitleService::Source>{{m_parts.catalogueName, m_parts.catalogue, {}},
                                               {RestRecord::service(), m_rest, hasKey}},
        m_names, preferences));
    MetadataService::setShared(
        std::make_shared<CombinedMetadataService>(QList<CombinedMetadataService::Source>{
            {m_parts.catalogueMetadata, {}}, {m_films, [films = m_films] { return films->hasKey(); }}}));
}

void Services::reloadSecrets()
{
    loadCredentials(*m_parts.secrets, [weak = std::weak_ptr(m_alive)](const Credentials &credentials) {
        const auto alive = weak.lock();
        if (!alive)
            return;
        (*alive)->m_credentials = credentials;
        (*alive)->apply();
    });
}

void Services::apply()
{
    const UserDefaults &defaults = UserDefaults::standard();
    m_rest->setSettings(ServiceDefaults::restSettings(defaults, m_credentials));
    m_films->setSettings(ServiceDefaults::filmSettings(defaults, m_credentials));
    if (m_observer)
        m_observer();
}
