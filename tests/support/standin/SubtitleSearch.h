#pragma once
#include "Behaviours.h"
#include "Exchange.h"

/// The search endpoint: canonical addresses only, pages of fifty.
class SubtitleSearch final
{
public:
    explicit SubtitleSearch(const Behaviours &behaviours) : m_behaviours(behaviours) {}

    /// `abroad` is where the behaviour "redirect-abroad" sends people.
    ServedAnswer answer(const ReceivedRequest &request, const QUrl &abroad);
    int redirects() const { return m_redirects; }

    /// The one query that is answered without a redirect.
    static QByteArray canonicalQuery(const QByteArray &query);

private:
    ServedAnswer redirect(const QByteArray &location);
    ServedAnswer page(const QUrlQuery &query) const;

    const Behaviours &m_behaviours;
    int m_redirects = 0;
};
