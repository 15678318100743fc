#pragma once
#include "FilmStandIn.h"
#include "LoopbackServer.h"
#include "SubtitleStandIn.h"

/// Both services on this machine: the subtitle service with its VIP host and its host of links, the film
/// database with its host of pictures, and a foreign host where nobody should arrive. Each keeps its log.
class StandIn final
{
public:
    /// Goes by the machine's clock.
    StandIn();
    /// Goes by a test's.
    explicit StandIn(const StandInTime &time);

    void select(const QString &behaviour) { m_behaviours.select(behaviour); }
    void select(const QStringList &behaviours);
    void clearBehaviours() { m_behaviours.clear(); }

    QUrl subtitleURL() const { return m_main.url(QStringLiteral("/api/v1")); }
    QUrl filmURL() const { return m_main.url(QStringLiteral("/3")); }

    LoopbackServer &main() { return m_main; }
    LoopbackServer &vip() { return m_vip; }
    LoopbackServer &links() { return m_links; }
    LoopbackServer &images() { return m_images; }
    LoopbackServer &foreign() { return m_foreign; }
    SubtitleStandIn &subtitles() { return m_subtitles; }

    /// The requests to the main host whose path begins so, in order.
    QList<ReceivedRequest> requests(const QByteArray &path) const;
    /// As if the machine had died, and come back.
    void stop();
    void start();
    void drip();
    void setDripInterval(int milliseconds);

    /// What no client should ever do, read from the logs; empty when all went well.
    QStringList complaints() const;

private:
    Behaviours m_behaviours;
    SubtitleStandIn m_subtitles;
    FilmStandIn m_films;
    LoopbackServer m_main;
    LoopbackServer m_vip;
    LoopbackServer m_links;
    LoopbackServer m_images;
    LoopbackServer m_foreign;
};
