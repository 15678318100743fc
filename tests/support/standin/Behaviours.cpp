#include "Behaviours.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr char Known[] =
    "redirect-loop redirect-abroad unknown-key vip vip-elsewhere short-token token-gone token-gone-406 "
    "token-gone-500 token-refused too-fast too-fast-once too-fast-silent too-fast-date too-fast-hour "
    "quota-used quota-reset-past quota-reset-soon account-wanted invalid-file invalid-file-counted "
    "hits-0 hits-1 hits-50 hits-51 hits-1502 pages-too-many page-empty page-repeats odd-records "
    "one-name unreadable-records one-bad-record mixed-matches gzip gzip-unasked gzip-bomb chunked drip "
    "stall silent length-too-long chunked-without-end close-before close-once close-after empty "
    "no-content not-modified html sign-in-page sign-in-511 array null as-text bad-utf8 bom cut 20-mib "
    "down down-once broken gateway-page bad-request subtitle-gzip subtitle-zip subtitle-zip-damaged "
    "subtitle-zip-locked subtitle-zip-shut subtitle-rar subtitle-gif subtitle-html subtitle-notice "
    "subtitle-short subtitle-empty subtitle-304 subtitle-utf16 subtitle-1252 subtitle-bomb "
    "subtitle-9-mib link-once link-expired link-forbidden link-gone link-clear link-foreign "
    "link-missing link-name-path film-key-refused film-too-fast film-not-found film-no-store "
    "poster-html poster-cut poster-huge poster-changes";
} // namespace

void Behaviours::select(const QString &behaviour)
{
    if (!names().contains(behaviour.section(u'@', 0, 0)))
        qFatal("The stand-in knows no behaviour \"%s\"", qUtf8Printable(behaviour));
    m_selected += behaviour;
}

bool Behaviours::has(QLatin1StringView name, QLatin1StringView endpoint) const
{
    return m_selected.contains(name + "@"_L1 + endpoint) || (endpoint == "search"_L1 && has(name));
}

bool Behaviours::takeOnce(QLatin1StringView name, QLatin1StringView endpoint)
{
    return m_selected.remove(name + "@"_L1 + endpoint) ||
           (endpoint == "search"_L1 && m_selected.remove(name));
}

QStringList Behaviours::names()
{
    return QString::fromLatin1(Known).split(u' ');
}
