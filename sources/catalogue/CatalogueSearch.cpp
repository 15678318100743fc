#include "CatalogueSearch.h"

#include <base/SafeFileName.h>
#include <media/names/ReleaseAgreement.h>
#include <model/LanguageCodes.h>

#include <QHash>
#include <QRegularExpression>

#include <tuple>

using namespace Qt::StringLiterals;

namespace
{
bool isHash(const QString &text)
{
    static const QRegularExpression digits(u"^[0-9a-f]{16}\\z"_s);
    return digits.match(text).hasMatch();
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

/// Of files with the same content in a language, keeps the one that a ranking would put first.
QList<SubtitlePtr> withoutCopies(const QList<CatalogueEntry> &found, const QString &text)
{
    const auto rank = [&](const Subtitle &subtitle) {
        return std::tuple(subtitle.matchesHash, releaseAgreement(subtitle.subFileName, text),
                          subtitle.downloads.value_or(0));
    };
    QList<SubtitlePtr> kept;
    QHash<std::pair<QByteArray, QString>, qsizetype> places;
    for (const auto &[id, subtitle, digest] : found) {
        const auto identity = std::pair(digest, subtitle.subLanguageID);
        const auto place = digest.isEmpty() ? places.cend() : places.constFind(identity);
        if (place == places.cend()) {
            places.insert(identity, kept.size());
            kept += std::make_shared<const Subtitle>(subtitle);
        } else if (rank(subtitle) > rank(*kept[*place])) {
            kept[*place] = std::make_shared<const Subtitle>(subtitle);
        }
    }
    return kept;
}
} // namespace

CatalogueRequest CatalogueRequest::from(const QList<Arg> &args)
{
    QString size;
    QString hash;
    CatalogueRequest request;
    for (const Arg &arg : args) {
        if (arg.param == Param::byteSize)
            size = arg.value;
        else if (arg.param == Param::movieHash)
            hash = arg.value.toLower();
        else if (arg.param == Param::text)
            request.text = arg.value;
        else if (arg.param == Param::language)
            request.language = LanguageCodes::shared().code(arg.value);
    }
    bool isNumber = false;
    const quint64 bytes = size.toULongLong(&isNumber);
    if (isNumber && isHash(hash))
        request.video = VideoHash{hash, bytes};
    return request;
}

Result<QueryResult> searchCatalogues(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                     const CatalogueRequest &request, const ReadLimits &limits)
{
    if (request.language && request.language->isEmpty())
        return QueryResult{QList<SubtitlePtr>()};
    QList<CatalogueEntry> found;
    std::optional<base::Error> failure;
    for (qsizetype i = 0; i < places.size(); ++i) {
        if (places[i].isLeftOut())
            continue;
        Result<QList<CatalogueEntry>> entries = entriesOf(places[i], errors, request, limits);
        if (!entries) {
            failure = failure ? failure : entries.error();
            continue;
        }
        for (CatalogueEntry &entry : entries.value()) {
            Subtitle &subtitle = entry.subtitle;
            subtitle.service = CatalogueService::name();
            subtitle.fileID = u"%1/%2"_s.arg(i).arg(entry.id); // the catalogue and the row
            subtitle.languageName = LanguageCodes::shared().name(subtitle.subLanguageID, request.locale);
        }
        found += entries.value();
    }
    if (found.isEmpty() && failure)
        return *failure;
    return QueryResult{withoutCopies(found, request.text)};
}

Result<QUrl> fetchFromCatalogue(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                const Subtitle &subtitle, const DownloadFolder &downloads)
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
    const Result<std::optional<CatalogueFile>> file = database ? database->file(row) : database.error();
    if (!file)
        return file.error();
    // The catalogue, and the row with it, may have been replaced since the search.
    const bool isTheOne = *file && (*file)->release.simplified().startsWith(subtitle.subFileName);
    if (!isTheOne || (*file)->content.isEmpty())
        return errors.error(CatalogueFailure::NoLongerThere, path);
    return downloads.publish(safeFileName(subtitle.subFileName, subtitle.subFormat), (*file)->content);
}
