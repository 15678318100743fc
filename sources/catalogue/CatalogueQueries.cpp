#include "CatalogueQueries.h"

#include "PreparedStatements.h"
#include "TitleQuery.h"

#include <base/SafeFileName.h>
#include <model/ImdbNumber.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxTitles = 200;
constexpr int MaxHalfTitles = 100; // where half of the words will do; the later ones have the frequent words
constexpr int MaxUnranked = 300;
constexpr qsizetype MaxTextLength = 300; // of a displayed name

/// The columns of an entry, in the order that `entryFrom` expects.
constexpr char EntryColumns[] =
    "SELECT s.id, s.release, s.language, s.format, s.downloads, s.frames_per_second, s.hearing_impaired,"
    " s.foreign_parts_only, s.machine_translated, s.digest, f.year, f.season, f.episode, f.imdb, ";
constexpr char MainTitle[] =
    "(SELECT t.name FROM film_title ft JOIN title t ON t.id = ft.title_id WHERE ft.film_id = f.id"
    " ORDER BY ft.is_main DESC LIMIT 1)";
/// The same when a title, ?1, found the film; most often that is the main one.
constexpr char MainTitleOfFound[] = "CASE WHEN x.is_main THEN (SELECT name FROM title WHERE id = ?1) ELSE ";

QString text(const SQLite::Column &column)
{
    // Line breaks would split a row on screen.
    return QString::fromUtf8(column.getText(), std::min(column.getBytes(), 4096))
        .simplified()
        .left(MaxTextLength);
}

template <class Number>
std::optional<Number> number(const SQLite::Column &column, Number low, Number high)
{
    if (!column.isInteger() && !column.isFloat())
        return std::nullopt;
    const double value = column.getDouble();
    if (!(value >= static_cast<double>(low) && value <= static_cast<double>(high)))
        return std::nullopt;
    return static_cast<Number>(value);
}

CatalogueEntry entryFrom(SQLite::Statement &row)
{
    CatalogueEntry entry;
    entry.id = row.getColumn(0).getInt64();
    Subtitle &subtitle = entry.subtitle;
    subtitle.subFileName = text(row.getColumn(1));
    subtitle.subLanguageID = text(row.getColumn(2));
    subtitle.subFormat = safeExtension(text(row.getColumn(3)));
    subtitle.downloads = number<qint64>(row.getColumn(4), 0, 1'000'000'000'000);
    subtitle.framesPerSecond = number<double>(row.getColumn(5), 1, 1000);
    subtitle.hearingImpaired = row.getColumn(6).getInt() != 0;
    subtitle.foreignPartsOnly = row.getColumn(7).getInt() != 0;
    subtitle.machineTranslated = row.getColumn(8).getInt() != 0;
    const SQLite::Column digest = row.getColumn(9);
    entry.digest = QByteArray(static_cast<const char *>(digest.getBlob()), std::min(digest.getBytes(), 64));
    subtitle.year = number(row.getColumn(10), 1, 9999);
    subtitle.season = number(row.getColumn(11), 0, 99999);
    subtitle.episode = number(row.getColumn(12), 0, 99999);
    if (const auto imdb = number<qint64>(row.getColumn(13), 1, 999'999'999))
        subtitle.imdbID = imdbId(*imdb);
    subtitle.title = text(row.getColumn(14));
    return entry;
}

struct AnsweringTitle
{
    qint64 id = 0;
    TitleAnswer answer;
    qsizetype length = 0;
};

using MatchingTitles = QList<std::pair<qint64, QString>>; // rows and names

MatchingTitles matchingTitles(PreparedStatements &statements, const char *query, const QString &expression,
                              int limit)
{
    auto statement = statements.use(query, expression, limit);
    MatchingTitles titles;
    while (statement->executeStep())
        titles += {statement->getColumn(0).getInt64(), text(statement->getColumn(1))};
    return titles;
}

constexpr char SomeTitles[] = "SELECT t.id, t.name FROM title_words w JOIN title t ON t.id = w.rowid"
                              " WHERE title_words MATCH ? LIMIT ?";
constexpr char BestTitles[] = "SELECT t.id, t.name FROM title_words w JOIN title t ON t.id = w.rowid"
                              " WHERE title_words MATCH ? ORDER BY w.rank LIMIT ?";

/// All matching titles when these are few. The index's ranking would first count every title that has one of
/// the words, such as "the". With many titles and several words, titles with the words side by side come
/// first, then the first others.
MatchingTitles matchingTitles(PreparedStatements &statements, const TitleQuery::Reading &reading,
                              WordMatch match)
{
    const QString expression = matchExpression(reading, match);
    MatchingTitles titles = matchingTitles(statements, SomeTitles, expression, MaxUnranked);
    if (titles.size() < MaxUnranked)
        return titles;
    if (reading.words.size() == 1)
        return matchingTitles(statements, BestTitles, expression, MaxTitles);
    return matchingTitles(statements, SomeTitles, phraseExpression(reading, match), MaxTitles) + titles;
}

/// The titles that match one reading, the closest first; among equals those with more of the words, then the
/// shorter. Whole words are searched separately, because a title equal to the word could be too far down
/// among the titles in which a word begins with it.
QList<AnsweringTitle> titlesFor(PreparedStatements &statements, const TitleQuery::Reading &reading)
{
    QList<AnsweringTitle> titles;
    QSet<qint64> seen;
    for (const WordMatch match : {WordMatch::Whole, WordMatch::Begun}) {
        if (titles.size() >= MaxTitles)
            break;
        for (const auto &[id, name] : matchingTitles(statements, reading, match)) {
            if (seen.contains(id))
                continue;
            seen += id;
            if (const auto answer = titleAnswer(reading, name))
                titles += {id, *answer, name.size()};
        }
    }
    std::stable_sort(titles.begin(), titles.end(), [](const AnsweringTitle &a, const AnsweringTitle &b) {
        return std::tuple(-a.answer.closeness, -a.answer.letters, a.length) <
               std::tuple(-b.answer.closeness, -b.answer.letters, b.length);
    });
    const bool isHalf = reading.demand == TitleQuery::Reading::Demand::HalfOfThem;
    return titles.mid(0, isHalf ? MaxHalfTitles : MaxTitles);
}

/// Reads as few pages as possible: of films without a subtitle in the language only the index by film and
/// language, and of a series only the wanted episodes. Year, season and episode of the text are part of the
/// statement: a long series has more subtitles than are read, the wanted ones must be among them, and a
/// missing episode is not answered with another one. The language is a separate condition, so that SQLite
/// uses the index by film and language.
std::string entriesOfTitle(bool hasLanguage, bool hasEpisode)
{
    std::string text = EntryColumns;
    text.append(MainTitleOfFound).append(MainTitle).append(" END FROM film_title x");
    text += hasLanguage && !hasEpisode ? " CROSS JOIN subtitle s ON s.film_id = x.film_id"
                                         " CROSS JOIN film f ON f.id = s.film_id"
                                       : " CROSS JOIN film f ON f.id = x.film_id"
                                         " CROSS JOIN subtitle s ON s.film_id = f.id";
    text += " WHERE x.title_id = ?1";
    if (hasLanguage)
        text += " AND s.language = ?2";
    text += " AND (?4 IS NULL OR f.season IS NULL OR f.season = ?4)"
            " AND (?5 IS NULL OR f.episode IS NULL OR f.episode = ?5)"
            " ORDER BY (?6 IS NOT NULL AND f.year IS ?6) DESC, s.downloads DESC, s.id LIMIT ?3";
    return text;
}

QList<CatalogueEntry> entriesOfTitles(SQLite::Database &database, const QList<AnsweringTitle> &titles,
                                      const QString &language, const TitleQuery &facts)
{
    const std::string text = entriesOfTitle(!language.isEmpty(), facts.season || facts.episode);
    PreparedStatements statements(database);
    QList<CatalogueEntry> entries;
    QSet<qint64> seen; // a film with several titles occurs several times, by its closest first
    for (const AnsweringTitle &title : titles) {
        const auto row = statements.use(text.c_str(), title.id, language, CatalogueQueries::MaxEntries,
                                        facts.season, facts.episode, facts.year);
        while (row->executeStep()) {
            const CatalogueEntry entry = entryFrom(*row);
            if (seen.contains(entry.id))
                continue;
            seen += entry.id;
            entries += entry;
        }
        if (entries.size() >= CatalogueQueries::MaxEntries)
            break;
    }
    return entries;
}

/// Keeps the entries of this year if there are any; otherwise the text named it wrongly.
void preferYear(QList<CatalogueEntry> &entries, std::optional<int> year)
{
    const auto disagrees = [&](const CatalogueEntry &entry) { return entry.subtitle.year != year; };
    if (year && !std::all_of(entries.cbegin(), entries.cend(), disagrees))
        entries.removeIf(disagrees);
}
} // namespace

QList<CatalogueEntry> CatalogueQueries::forVideo(SQLite::Database &database, qint64 size, const QString &hash,
                                                 const QString &language)
{
    static const std::string text =
        std::string(EntryColumns) + MainTitle +
        ", s.id IN (SELECT subtitle_id FROM video WHERE hash = ?1 AND size = ?2) AS is_exact"
        " FROM film f JOIN subtitle s ON s.film_id = f.id WHERE f.id IN"
        " (SELECT m.film_id FROM video v JOIN subtitle m ON m.id = v.subtitle_id"
        "  WHERE v.hash = ?1 AND v.size = ?2)"
        " AND (?3 = '' OR s.language = ?3) ORDER BY is_exact DESC, s.downloads DESC, s.id LIMIT ?4";
    PreparedStatements statements(database);
    const auto row = statements.use(text.c_str(), hash, size, language, MaxEntries);
    QList<CatalogueEntry> entries;
    while (row->executeStep()) {
        CatalogueEntry entry = entryFrom(*row);
        entry.subtitle.matchesHash = row->getColumn(15).getInt() != 0;
        entries += entry;
    }
    return entries;
}

QList<CatalogueEntry> CatalogueQueries::forText(SQLite::Database &database, const QString &text,
                                                const QString &language)
{
    // One transaction locks the file and checks for changes once, and all statements see the same state
    // during an import.
    const SQLite::Transaction snapshot(database);
    PreparedStatements statements(database);
    const TitleQuery query = titleQuery(text);
    for (const TitleQuery::Reading &reading : query.readings) {
        const QList<AnsweringTitle> titles = titlesFor(statements, reading);
        if (titles.isEmpty())
            continue;
        const TitleQuery facts = reading.checksFacts ? query : TitleQuery();
        QList<CatalogueEntry> entries = entriesOfTitles(database, titles, language, facts);
        preferYear(entries, facts.year);
        if (!entries.isEmpty())
            return entries.mid(0, MaxEntries);
    }
    return {};
}
