#include "SubtitleSearch.h"

#include "Deformation.h"
#include "SubtitleRecords.h"

#include <QJsonDocument>
#include <QMap>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr int PerPage = 50;

QByteArray encoded(const QByteArray &value)
{
    return QUrl::toPercentEncoding(QString::fromUtf8(value)).replace("%20", "+");
}

QByteArray decoded(QByteArray value)
{
    return QByteArray::fromPercentEncoding(value.replace('+', ' '));
}

const QMap<QByteArray, QByteArray> &defaults()
{
    static const QMap<QByteArray, QByteArray> values{{"page", "1"},
                                                     {"type", "all"},
                                                     {"hearing_impaired", "include"},
                                                     {"foreign_parts_only", "include"},
                                                     {"trusted_sources", "include"},
                                                     {"moviehash_match", "include"},
                                                     {"machine_translated", "exclude"},
                                                     {"ai_translated", "include"}};
    return values;
}

QByteArray sortedLanguages(const QByteArray &value)
{
    QByteArrayList codes = value.split(',');
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return codes.join(',');
}
} // namespace

QByteArray SubtitleSearch::canonicalQuery(const QByteArray &query)
{
    QMap<QByteArray, QByteArray> items; // sorted by key
    for (const QByteArray &item : query.split('&')) {
        const qsizetype equals = item.indexOf('=');
        const QByteArray key = item.left(equals).toLower();
        QByteArray value = decoded(item.mid(equals + 1));
        value = QString::fromUtf8(value).toLower().toUtf8();
        if (key.endsWith("_id") || key == "year") {
            value = value.startsWith("tt") ? value.mid(2) : value;
            while (value.startsWith('0'))
                value.remove(0, 1);
        }
        if (key == "languages")
            value = sortedLanguages(value);
        if (!value.isEmpty() && defaults().value(key) != value)
            items[key] = encoded(value);
    }
    QByteArrayList parts;
    for (auto it = items.cbegin(); it != items.cend(); ++it)
        parts += it.key() + "=" + it.value();
    return parts.join('&');
}

ServedAnswer SubtitleSearch::redirect(const QByteArray &location)
{
    ++m_redirects;
    return {301, {{"Location", location}, {"Cache-Control", "public, max-age=86400"}}, {}};
}

ServedAnswer SubtitleSearch::answer(const ReceivedRequest &request, const QUrl &abroad)
{
    if (m_behaviours.has("redirect-loop"_L1))
        return redirect(request.target);
    if (m_behaviours.has("redirect-abroad"_L1))
        return redirect(abroad.toEncoded());
    const QByteArray canonical = canonicalQuery(request.query());
    if (canonical != request.query())
        return redirect("/api/v1/subtitles?" + canonical);
    const QUrlQuery query(QString::fromLatin1(request.query()).replace(u'+', u' '));
    static const QRegularExpression hash(u"^[0-9a-f]{16}$"_s);
    const QString given = query.queryItemValue(u"moviehash"_s);
    if (query.hasQueryItem(u"moviehash"_s) && !hash.match(given).hasMatch())
        return {400, {{"X-Reason", "Request parameters does not make sense, moviehash is wrong"}}, {}};
    return page(query);
}

ServedAnswer SubtitleSearch::page(const QUrlQuery &query) const
{
    const int count = SubtitleRecords::count(m_behaviours);
    const int number = std::max(1, query.queryItemValue(u"page"_s).toInt());
    const int first = m_behaviours.has("page-repeats"_L1) ? 0 : (number - 1) * PerPage;
    const int extra = m_behaviours.has("pages-too-many"_L1) ? 10 : 0;
    QJsonArray data;
    if (!(m_behaviours.has("page-empty"_L1) && number == 2))
        data = SubtitleRecords::page(m_behaviours, query, first, PerPage);
    const QJsonObject envelope{{u"total_pages"_s, (count + PerPage - 1) / PerPage + extra},
                               {u"total_count"_s, count},
                               {u"per_page"_s, PerPage},
                               {u"page"_s, number},
                               {u"data"_s, data}};
    return jsonAnswer(200, QJsonDocument(envelope).toJson(QJsonDocument::Compact));
}
