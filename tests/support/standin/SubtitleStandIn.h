#pragma once
#include "Books.h"
#include "SubtitleLinks.h"
#include "SubtitleLogin.h"
#include "SubtitleSearch.h"

/// The subtitle service: who may ask, how fast, and which endpoint answers.
class SubtitleStandIn final
{
public:
    static inline const QString ApiKey = QStringLiteral("standin0key0of0the0subtitles");
    static inline const QString UserName = QStringLiteral("reader");
    static inline const QString Password = QStringLiteral("open-sesame");

    struct Addresses
    {
        quint16 vipPort = 0;
        QByteArray vipHost;
        QUrl links;
        QUrl abroad;
    };

    SubtitleStandIn(Behaviours &behaviours, const StandInTime &time);

    void setAddresses(const Addresses &addresses) { m_addresses = addresses; }
    ServedAnswer answer(const ReceivedRequest &request);
    ServedAnswer link(const ReceivedRequest &request);

    const RateBook &rate() const { return m_rate; }
    QuotaBook &quota() { return m_quota; }
    int redirects() const { return m_search.redirects(); }
    int refusedLogins() const { return m_login.refusedLogins(); }

private:
    std::optional<ServedAnswer> gate(const ReceivedRequest &request);
    std::optional<ServedAnswer> tooFast();
    ServedAnswer route(const ReceivedRequest &request, QLatin1StringView endpoint);
    ServedAnswer download(const ReceivedRequest &request);
    ServedAnswer user(const ReceivedRequest &request);
    QByteArray resetTime() const;

    Behaviours &m_behaviours;
    StandInTime m_time;
    Addresses m_addresses;
    RateBook m_rate;
    QuotaBook m_quota;
    SubtitleSearch m_search;
    SubtitleLogin m_login;
    SubtitleLinks m_links;
};
