#include "FilmSettings.h"

#include <QHash>
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

QString filmLanguage(const QString &twoLetterCode)
{
    // Codes that only the subtitle services use, and languages that differ by country.
    static const QHash<QString, QString> tags{
        {u"pb"_s, u"pt-BR"_s}, {u"pt"_s, u"pt-PT"_s}, {u"pm"_s, u"pt-PT"_s}, {u"zh"_s, u"zh-CN"_s},
        {u"ze"_s, u"zh-CN"_s}, {u"zt"_s, u"zh-TW"_s}, {u"ea"_s, u"es-MX"_s}, {u"sp"_s, u"es-ES"_s},
        {u"pr"_s, u"fa"_s},    {u"me"_s, u"sr"_s},    {u"at"_s, u"es-ES"_s}, {u"ex"_s, u"es-ES"_s},
        {u"en"_s, u"en-US"_s}, {u"iw"_s, u"he"_s},    {u"in"_s, u"id"_s},    {u"ji"_s, u"yi"_s},
        {u"mo"_s, u"ro"_s},    {u"ma"_s, u"en-US"_s}, {u"sy"_s, u"en-US"_s}, {u"sx"_s, u"en-US"_s},
        {u"tp"_s, u"en-US"_s}};
    const QString code = twoLetterCode.trimmed().toLower();
    const bool isCode =
        code.size() == 2 && code[0] >= u'a' && code[0] <= u'z' && code[1] >= u'a' && code[1] <= u'z';
    return isCode ? tags.value(code, code) : u"en-US"_s;
}
