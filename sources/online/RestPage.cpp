#include "RestPage.h"

#include "RestLanguages.h"
#include "RestURL.h"

#include <model/ImdbNumber.h>
#include <model/LanguageCodes.h>
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
constexpr qsizetype MaxNameLength = 200;
constexpr int MaxFiles = 20;

std::optional<int> positive(std::optional<int> value)
{
    return value && *value > 0 ? value : std::nullopt;
}

std::optional<QString> idOf(const QJsonObject &feature)
{
    for (const QString &key : {u"imdb_id"_s, u"parent_imdb_id"_s}) {
        const std::optional<qint64> number = Json::integer(feature, key);
        if (number && *number > 0 && *number < 1'000'000'000)
            return imdbId(*number);
    }
    return std::nullopt;
}

void readFeature(Subtitle &subtitle, const QJsonObject &feature)
{
    const bool isEpisode =
        Json::text(feature, u"feature_type"_s).compare("episode"_L1, Qt::CaseInsensitive) == 0;
    const QString show = plainLine(Json::text(feature, u"parent_title"_s), MaxNameLength);
    subtitle.title =
        isEpisode && !show.isEmpty() ? show : plainLine(Json::text(feature, u"title"_s), MaxNameLength);
    subtitle.year = positive(Json::smallInteger(feature, u"year"_s));
    subtitle.imdbID = idOf(feature);
    if (!isEpisode)
        return;
    subtitle.season = Json::smallInteger(feature, u"season_number"_s);
    subtitle.episode = Json::smallInteger(feature, u"episode_number"_s);
}

Subtitle readAttributes(const QJsonObject &attributes, const Locale &locale)
{
    Subtitle subtitle;
    subtitle.service = RestPage::service();
    subtitle.subFormat = u"srt"_s; // the service converts to the requested format
    subtitle.subLanguageID = RestLanguages::toThreeLetters(Json::text(attributes, u"language"_s));
    subtitle.languageName = LanguageCodes::shared().name(subtitle.subLanguageID, locale);
    subtitle.matchesHash = Json::flag(attributes, u"moviehash_match"_s);
    const std::optional<double> fps = Json::number(attributes, u"fps"_s);
    if (fps && *fps > 0 && *fps < 1000)
        subtitle.framesPerSecond = fps;
    const std::optional<qint64> downloads = Json::integer(attributes, u"download_count"_s);
    if (downloads && *downloads >= 0)
        subtitle.downloads = downloads;
    subtitle.hearingImpaired = Json::flag(attributes, u"hearing_impaired"_s);
    subtitle.foreignPartsOnly = Json::flag(attributes, u"foreign_parts_only"_s);
    subtitle.machineTranslated =
        Json::flag(attributes, u"machine_translated"_s) || Json::flag(attributes, u"ai_translated"_s);
    subtitle.trusted = Json::flag(attributes, u"from_trusted"_s);
    readFeature(subtitle, attributes[u"feature_details"_s].toObject());
    return subtitle;
}

QString fileName(const QJsonObject &file, const QString &release, const Subtitle &subtitle)
{
    for (const QString &name :
         {plainLine(Json::text(file, u"file_name"_s), MaxNameLength), release, subtitle.title}) {
        if (!name.isEmpty())
            return name;
    }
    return Json::text(file, u"file_id"_s);
}

base::Error nonsense(const QString &detail)
{
    return serviceError(ServiceFailure::BadAnswer, ServiceName::Subtitles, detail);
}
} // namespace

QString plainLine(const QString &text, qsizetype maxLength)
{
    QString line;
    for (const QChar c : text.left(4 * maxLength)) {
        const QChar::Category category = c.category();
        if (c.isSpace() || category == QChar::Other_Control)
            line += u' ';
        else if (category != QChar::Other_Format && c != QChar::ReplacementCharacter)
            line += c;
    }
    line = line.simplified();
    if (line.size() > maxLength)
        line = line.left(line[maxLength - 1].isHighSurrogate() ? maxLength - 1 : maxLength);
    return line;
}

QString RestPage::service()
{
    return u"rest"_s;
}

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
        if (const auto subtitles = record(data[i], base, locale)) {
            ++readable;
            page.subtitles += *subtitles;
        }
    }
    if (page.records > 0 && readable == 0)
        return nonsense(u"none of %1 records can be read"_s.arg(page.records));
    return page;
}

std::optional<QList<SubtitlePtr>> RestPage::record(const QJsonValue &value, const QUrl &base,
                                                   const Locale &locale)
{
    const QJsonObject attributes = value[u"attributes"_s].toObject();
    if (!attributes[u"files"_s].isArray())
        return std::nullopt;
    const Subtitle common = readAttributes(attributes, locale);
    const QString release = plainLine(Json::text(attributes, u"release"_s), MaxNameLength);
    QList<SubtitlePtr> result;
    const QJsonArray files = attributes[u"files"_s].toArray();
    for (qsizetype i = 0; i < std::min<qsizetype>(files.size(), MaxFiles); ++i) {
        const QJsonObject file = files[i].toObject();
        const std::optional<qint64> id = Json::integer(file, u"file_id"_s);
        if (!id || *id <= 0)
            continue;
        auto subtitle = std::make_shared<Subtitle>(common);
        subtitle->fileID = RestURL::fileId(base, *id);
        subtitle->subFileName = fileName(file, release, *subtitle);
        result += subtitle;
    }
    return result;
}
