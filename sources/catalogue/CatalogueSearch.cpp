#include "CatalogueSearch.h"

#include "CatalogueDatabase.h"

#include <base/SafeFileName.h>
#include <media/names/ReleaseAgreement.h>
#include <model/ServiceLanguages.h>

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace
{
struct RankedEntry
{
    CatalogueEntry entry;
    int agreement = 0;
};

bool isHash(const QString &text)
{
    const auto isDigit = [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); };
    return text.size() == 16 && std::all_of(text.begin(), text.end(), isDigit);
}

bool isWanted(const CataloguePlace &place)
{
    return place.presence == CataloguePlace::Presence::Required || QFileInfo::exists(place.path);
}

Result<QList<CatalogueEntry>> entriesOf(const CataloguePlace &place, const CatalogueErrors &errors,
                                        const CatalogueRequest &request, const ReadLimits &limits)
{
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(place.path, errors, limits);
    if (!database)
        return database.error();
    const QString language = request.language.value_or(QString());
    if (request.video)
        return database->entriesForVideo(request.video->size, request.video->hash, language);
    return database->entriesForText(request.text, language);
}

/// A result's id within this service: the catalogue and the row.
QString fileIdOf(qsizetype place, qint64 row)
{
    return u"%1/%2"_s.arg(place).arg(row);
}

int agreementOf(const CatalogueEntry &entry, const CatalogueRequest &request)
{
    // For typed words the title counts before the release, so that "Heat" does not find "Heathers" first.
    constexpr int TitleWeight = 1000;
    const QString &name = request.video ? request.videoName : request.text;
    return TitleWeight * entry.closeness + releaseAgreement(entry.subtitle.subFileName, name);
}

bool isBetter(const RankedEntry &a, const RankedEntry &b)
{
    const auto key = [](const RankedEntry &ranked) {
        const Subtitle &subtitle = ranked.entry.subtitle;
        return std::tuple(subtitle.matchesHash, ranked.agreement, subtitle.downloads.value_or(0));
    };
    return key(a) > key(b);
}

QList<SubtitlePtr> inOrder(QList<RankedEntry> found)
{
    std::stable_sort(found.begin(), found.end(), isBetter);
    QList<SubtitlePtr> subtitles;
    QSet<std::pair<QByteArray, QString>> seen;
    for (const RankedEntry &ranked : found) {
        const auto identity = std::pair(ranked.entry.digest, ranked.entry.subtitle.subLanguageID);
        if (!ranked.entry.digest.isEmpty() && seen.contains(identity))
            continue;
        seen += identity;
        subtitles += std::make_shared<const Subtitle>(ranked.entry.subtitle);
    }
    return subtitles;
}
} // namespace

CatalogueRequest CatalogueRequest::from(const QList<Arg> &args, const VideoNames &names)
{
    QString size;
    QString hash;
    CatalogueRequest request{std::nullopt, {}, std::nullopt, {}, Locale::current()};
    for (const Arg &arg : args) {
        if (arg.param == Param::byteSize)
            size = arg.value;
        else if (arg.param == Param::movieHash)
            hash = arg.value.toLower();
        else if (arg.param == Param::text)
            request.text = arg.value;
        else if (arg.param == Param::language)
            request.language = ServiceLanguages::code(arg.value);
    }
    bool isNumber = false;
    const quint64 bytes = size.toULongLong(&isNumber);
    if (isNumber && isHash(hash))
        request.video = VideoHash{hash, bytes};
    if (request.video)
        request.videoName = names.nameOf(*request.video);
    return request;
}

Result<QueryResult> searchCatalogues(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                     const CatalogueRequest &request, const ReadLimits &limits)
{
    if (request.language && request.language->isEmpty())
        return QueryResult{QList<SubtitlePtr>()};
    QList<RankedEntry> found;
    std::optional<base::Error> failure;
    for (qsizetype i = 0; i < places.size(); ++i) {
        if (!isWanted(places[i]))
            continue;
        Result<QList<CatalogueEntry>> entries = entriesOf(places[i], errors, request, limits);
        if (!entries) {
            failure = failure ? failure : entries.error();
            continue;
        }
        for (CatalogueEntry &entry : entries.value()) {
            entry.subtitle.service = CatalogueService::name();
            entry.subtitle.fileID = fileIdOf(i, entry.id);
            entry.subtitle.languageName =
                ServiceLanguages::name(entry.subtitle.subLanguageID, request.locale);
            found += {entry, agreementOf(entry, request)};
        }
    }
    if (found.isEmpty() && failure)
        return *failure;
    return QueryResult{inOrder(std::move(found))};
}

Result<FetchedSubtitle> fetchFromCatalogue(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                           const Subtitle &subtitle)
{
    const QStringList parts = subtitle.fileID.split(u'/');
    bool isPlace = false;
    bool isRow = false;
    const qsizetype place = parts.first().toLongLong(&isPlace);
    const qint64 row = parts.last().toLongLong(&isRow);
    if (parts.size() != 2 || !isPlace || !isRow || place < 0 || place >= places.size())
        return errors.error(CatalogueFailure::NoLongerThere, {});

    const QString &path = places[place].path;
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(path, errors);
    if (!database)
        return database.error();
    const Result<std::optional<CatalogueFile>> file = database->file(row);
    if (!file)
        return file.error();
    // The catalogue, and the row with it, may have been replaced since the search.
    const bool isTheOne = *file && (*file)->release.simplified().startsWith(subtitle.subFileName);
    if (!isTheOne || (*file)->content.isEmpty())
        return errors.error(CatalogueFailure::NoLongerThere, path);
    return FetchedSubtitle{safeFileName(subtitle.subFileName, subtitle.subFormat), (*file)->content};
}
