#include "RestPage.h"

#include <net/Json.h>
#include <net/ServiceError.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxRecords = 500;
constexpr qint64 MaxTotal = 1'000'000; // larger counts are ignored as invalid

base::Error nonsense(const QString &detail)
{
    return serviceError(ServiceFailure::BadAnswer, ServiceName::Subtitles, detail);
}
} // namespace

Result<RestPage> RestPage::read(const QByteArray &json, const QUrl &base, const Locale &locale,
                                const std::stop_token &stop)
{
    const std::optional<QJsonObject> envelope = Json::object(json);
    if (!envelope)
        return nonsense(u"the answer is no JSON object"_s);
    const QJsonValue dataValue = (*envelope)[u"data"_s];
    if (!dataValue.isArray())
        return nonsense(u"the answer has no list of records"_s);
    const QJsonArray data = dataValue.toArray();
    RestPage page;
    page.records = static_cast<int>(std::min<qsizetype>(data.size(), MaxRecords));
    page.page = Json::smallInteger(*envelope, u"page"_s).value_or(1);
    page.totalPages = Json::smallInteger(*envelope, u"total_pages"_s).value_or(1);
    page.totalCount =
        std::clamp<qint64>(Json::integer(*envelope, u"total_count"_s).value_or(0), data.size(), MaxTotal);
    page.fingerprint = QCryptographicHash::hash(QJsonDocument(data).toJson(QJsonDocument::Compact),
                                                QCryptographicHash::Sha1);
    int readable = 0;
    for (int i = 0; i < page.records; ++i) {
        if (stop.stop_requested())
            return nonsense(u"stopped while it was read"_s);
        const RestRecord record = RestRecord::read(data[i], base, locale);
        readable += record.isReadable ? 1 : 0;
        page.subtitles += record.subtitles;
    }
    if (page.records > 0 && readable == 0)
        return nonsense(u"none of %1 records can be read"_s.arg(page.records));
    return page;
}
