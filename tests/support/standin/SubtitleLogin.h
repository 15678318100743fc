#pragma once
#include "Behaviours.h"
#include "Exchange.h"

#include <QSet>

/// Logins and their tokens.
class SubtitleLogin final
{
public:
    SubtitleLogin(Behaviours &behaviours, StandInTime time)
        : m_behaviours(behaviours), m_time(std::move(time))
    {
    }

    /// `vip` is the host that the behaviour "vip" names.
    ServedAnswer login(const ReceivedRequest &request, const QByteArray &vip);
    ServedAnswer logout(const ReceivedRequest &request);
    /// What a request with a bad token gets; nothing when it has a good one or, where it may, none.
    std::optional<ServedAnswer> refusal(const ReceivedRequest &request);

    static QByteArray tokenOf(const ReceivedRequest &request);
    int refusedLogins() const { return m_refused; }

private:
    QByteArray newToken();

    Behaviours &m_behaviours;
    StandInTime m_time;
    QSet<QByteArray> m_tokens;
    int m_made = 0;
    int m_refused = 0;
};
