#include "RestQuery.h"

#include <media/names/FileNameParser.h>
#include <net/ServiceError.h>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
// The service refuses shorter words, and the hash with them.
constexpr qsizetype ShortestQuery = 3;

base::Error refusal(ServiceFailure kind, const QString &detail)
{
    return serviceError(kind, ServiceName::Subtitles, detail);
}

QString valueOf(const QList<Arg> &args, Param param)
{
    for (const Arg &arg : args) {
        if (arg.param == param)
            return arg.value;
    }
    return {};
}

/// Empty when no language was asked for, which means all.
Result<QString> languages(const QList<Arg> &args, const RestLanguages &known)
{
    QStringList codes;
    for (const Arg &arg : args) {
        if (arg.param != Param::language || arg.value.trimmed().isEmpty())
            continue;
        const QString code = known.codeFor(arg.value);
        if (code.isEmpty())
            return refusal(ServiceFailure::UnknownLanguage, u"no code for "_s + arg.value.left(20));
        codes += code;
    }
    codes.removeDuplicates();
    codes.sort();
    return codes.join(u',');
}

/// Three or more single letters in a row are an acronym in a file name; two may be words.
QString withDottedAcronyms(const QString &title)
{
    static const QRegularExpression letters(u"(?<![\\p{L}\\p{N}])(?:\\p{L} ){2,}\\p{L}(?![\\p{L}\\p{N}])"_s);
    QString result = title;
    for (auto matches = letters.globalMatch(title); matches.hasNext();) {
        const QString spaced = matches.next().captured();
        result.replace(spaced, QString(spaced).replace(u' ', u'.') + u'.');
    }
    return result;
}

/// The title as a person writes it: the parser splits it into words and removes the year that distinguishes
/// two shows of one name.
QString showTitle(const VideoFileComponents &parts, const QString &text)
{
    static const QRegularExpression acronym(
        u"(?<![\\p{L}\\p{N}])(?:\\p{L}\\.){2,}(?:\\p{L}(?![\\p{L}\\p{N}]))?"_s);
    QString title = parts.title.simplified();
    for (auto matches = acronym.globalMatch(text); matches.hasNext();) {
        const QString dotted = matches.next().captured();
        title.replace(QString(dotted).replace(u'.', u' ').trimmed(), dotted, Qt::CaseInsensitive);
    }
    title = withDottedAcronyms(title);
    return parts.year ? title + u' ' + QString::number(*parts.year) : title;
}

void addWords(RestURL::Parameters &query, const QString &text)
{
    const VideoFileComponents parts = parseVideoName(text);
    if (!parts.season || !parts.episode || parts.title.trimmed().isEmpty()) {
        query[u"query"_s] = text;
        return;
    }
    query[u"query"_s] = showTitle(parts, text);
    query[u"season_number"_s] = QString::number(*parts.season);
    query[u"episode_number"_s] = QString::number(*parts.episode);
}
} // namespace

Result<RestURL::Parameters> queryParameters(const QList<Arg> &args, const NameOfVideo &nameOf,
                                            bool machineTranslated, const RestLanguages &known)
{
    const Result<QString> wanted = languages(args, known);
    if (!wanted)
        return wanted.error();
    RestURL::Parameters query{{u"languages"_s, *wanted}};
    if (machineTranslated)
        query[u"machine_translated"_s] = u"include"_s;
    const QString hash = valueOf(args, Param::movieHash).toLower();
    if (hash.isEmpty()) {
        const QString text = valueOf(args, Param::text).simplified();
        if (text.isEmpty())
            return refusal(ServiceFailure::NothingToAsk, u"no words"_s);
        addWords(query, text);
        return query;
    }
    static const QRegularExpression sixteenDigits(u"\\A[0-9a-f]{16}\\z"_s);
    if (!sixteenDigits.match(hash).hasMatch())
        return refusal(ServiceFailure::Rejected, u"not a movie hash"_s);
    query[u"moviehash"_s] = hash;
    const VideoHash video{hash, valueOf(args, Param::byteSize).toULongLong()};
    const QString name = nameOf ? nameOf(video).section(u'/', -1).trimmed() : QString();
    if (name.size() >= ShortestQuery)
        query[u"query"_s] = name;
    return query;
}
