#include "FilmSettings.h"

#include <QRegularExpression>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace
{
bool isShortKey(const QString &key)
{
    static const QRegularExpression digits(u"\\A[0-9A-Fa-f]{32}\\z"_s);
    return digits.match(key).hasMatch();
}

QUrl address(const QUrl &base, const QString &path, const QMap<QString, QString> &items)
{
    QUrl url = base.adjusted(QUrl::StripTrailingSlash | QUrl::RemoveQuery);
    url.setPath(url.path() + path);
    QUrlQuery query;
    for (auto it = items.cbegin(); it != items.cend(); ++it)
        query.addQueryItem(it.key(), QString::fromLatin1(QUrl::toPercentEncoding(it.value())));
    if (!query.isEmpty())
        url.setQuery(query);
    return url;
}
} // namespace

QUrl FilmSettings::standardBase()
{
    return QUrl(u"https://api.themoviedb.org/3"_s);
}

HostRules FilmSettings::apiHosts() const
{
    return HostRules::of(base);
}

HostRules FilmSettings::imageHosts() const
{
    return HostRules::of(base, {u"*.tmdb.org"_s, u"*.themoviedb.org"_s});
}

HttpRequest FilmSettings::request(const QString &path, const QMap<QString, QString> &items) const
{
    HttpRequest request;
    QMap<QString, QString> all = items;
    // A header keeps the key out of addresses; short keys are only accepted in the address.
    if (isShortKey(key))
        all[u"api_key"_s] = key;
    else
        request.setHeader("Authorization", "Bearer " + key.toUtf8());
    request.setHeader("Accept", "application/json");
    request.url = address(base, path, all);
    return request;
}

QString FilmSettings::cacheKey(const QString &path, const QMap<QString, QString> &items) const
{
    return address(base, path, items).toString();
}
