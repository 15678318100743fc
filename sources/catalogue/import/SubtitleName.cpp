#include "SubtitleName.h"

#include <base/Locale.h>
#include <media/names/FileNameParser.h>
#include <media/names/NameWords.h>
#include <model/LanguageCodes.h>

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxReleaseLength = 250;

/// Maps English names to codes ("german" to "ger"), for languages with two-letter codes.
const QHash<QString, QString> &languageNames()
{
    static const QHash<QString, QString> names = [] {
        QHash<QString, QString> table;
        const Locale english(u"en"_s);
        for (char16_t first = u'a'; first <= u'z'; ++first) {
            for (char16_t second = u'a'; second <= u'z'; ++second) {
                const QString code = LanguageCodes::shared().code(QString(QChar(first)) + QChar(second));
                if (!code.isEmpty())
                    table.insert(LanguageCodes::shared().name(code, english).toLower(), code);
            }
        }
        return table;
    }();
    return names;
}

/// The language that a word names ("de", "ger", "pt-BR" or "German"); empty for other words.
QString languageOf(const QString &word)
{
    const QString lower = word.trimmed().toLower();
    if (const QString named = languageNames().value(lower); !named.isEmpty())
        return named;
    static const QRegularExpression tag(u"^[a-z]{2,3}(?:[-_][a-z]{2})?$"_s);
    const WordClass kind = classOfWord(lower);
    const bool isOfTheFile = kind.kind != WordKind::None && kind.kind != WordKind::Language; // "ts", "cam"
    if (isOfTheFile || !tag.match(lower).hasMatch())
        return {};
    const QString code = LanguageCodes::shared().code(lower);
    // Any three letters would pass as a code; those of real languages also have two letters.
    return LanguageCodes::shared().twoLetterCode(code).isEmpty() ? QString() : code;
}

/// A name without ".gz", parted at its last dot; the extension is empty without one.
std::pair<QString, QString> partedName(QString name)
{
    if (name.endsWith(".gz"_L1, Qt::CaseInsensitive))
        name.chop(3);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? std::pair(name.left(dot), name.mid(dot + 1)) : std::pair(name, QString());
}

/// Removes one mark from the end of the base name and stores it.
bool takeMark(QString &base, SubtitleName &said)
{
    const qsizetype dot = base.lastIndexOf(u'.');
    if (dot <= 0)
        return false;
    const QString mark = base.mid(dot + 1).toLower();
    const QString before = base.left(dot);
    // Alone "hi" is Hindi; after another language it marks subtitles for the hard of hearing.
    const bool isBehindLanguage = !languageOf(before.section(u'.', -1)).isEmpty() && before.contains(u'.');
    if (mark == "sdh"_L1 || mark == "cc"_L1 || mark == "hoh"_L1 || (mark == "hi"_L1 && isBehindLanguage))
        said.hearingImpaired = true;
    else if (mark == "forced"_L1 || mark == "foreign"_L1)
        said.foreignPartsOnly = true;
    else if (const QString language = languageOf(mark); said.language.isEmpty() && !language.isEmpty())
        said.language = language;
    else if (mark != "default"_L1)
        return false;
    base = before;
    return true;
}

/// "English" or "2_English" in disc folders: the whole name is a language, not a release.
QString wholeNameLanguage(const QString &base)
{
    static const QRegularExpression numbered(u"^(?:\\d{1,3}[ _.-]+)?([^\\d].*)$"_s);
    const QRegularExpressionMatch match = numbered.match(base);
    return match.hasMatch() ? languageOf(match.captured(1)) : QString();
}

QString nearestNamedFolder(const QStringList &folders)
{
    const auto isNamed = [](const QString &folder) {
        return !isSubtitleFolderName(folder) && languageOf(folder).isEmpty();
    };
    const auto found = std::find_if(folders.crbegin(), folders.crend(), isNamed);
    return found == folders.crend() ? QString() : *found;
}
} // namespace

bool isSubtitleFileName(const QString &name)
{
    static const QStringList extensions{u"srt"_s, u"ass"_s, u"ssa"_s, u"sub"_s,  u"vtt"_s,
                                        u"smi"_s, u"txt"_s, u"mpl"_s, u"ttml"_s, u"dfxp"_s};
    return !name.startsWith(u'.') && extensions.contains(partedName(name).second.toLower());
}

bool isSubtitleFolderName(const QString &name)
{
    static const QStringList names{u"subs"_s, u"sub"_s, u"subtitle"_s, u"subtitles"_s};
    return names.contains(name.toLower());
}

SubtitleName subtitleName(const QString &path)
{
    constexpr int MaxMarks = 4;
    QStringList folders = QString(path).replace(u'\\', u'/').split(u'/', Qt::SkipEmptyParts);
    if (folders.isEmpty())
        return {};
    QString base = partedName(folders.takeLast()).first;
    SubtitleName said;
    said.videoNames += base;
    for (int i = 0; i < MaxMarks && takeMark(base, said); ++i)
        said.videoNames += base;

    const QString whole = wholeNameLanguage(base);
    if (said.language.isEmpty())
        said.language = whole;
    if (said.language.isEmpty() && !folders.isEmpty())
        said.language = languageOf(folders.last());
    said.release = base;
    const QString folder = nearestNamedFolder(folders);
    if (!folder.isEmpty() && !whole.isEmpty())
        said.release = folder;
    else if (!folder.isEmpty() && parseVideoName(base).title.isEmpty())
        said.release = folder + u' ' + base;
    said.release = said.release.simplified().left(MaxReleaseLength);
    return said;
}

FilmRecord filmOfRelease(const QString &release)
{
    const VideoFileComponents said = parseVideoName(release);
    FilmRecord film;
    film.titles += said.title.isEmpty() ? release : said.title;
    film.year = said.year;
    film.season = said.season;
    film.episode = said.episode;
    film.isSeries = said.season || said.episode;
    return film;
}
