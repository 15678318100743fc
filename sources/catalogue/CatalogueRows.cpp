#include "CatalogueRows.h"

#include "SearchWords.h"

namespace
{
template <class Value>
void bindOptional(SQLite::Statement &statement, int index, const std::optional<Value> &value)
{
    if constexpr (std::is_integral_v<Value>) {
        if (value)
            return statement.bind(index, static_cast<int64_t>(*value));
    } else {
        if (value)
            return statement.bind(index, *value);
    }
    statement.bind(index);
}

void bindBlob(SQLite::Statement &statement, int index, const QByteArray &bytes)
{
    statement.bind(index, bytes.constData(), static_cast<int>(bytes.size()));
}

void bindRow(SQLite::Statement &statement, int index, qint64 row)
{
    statement.bind(index, static_cast<int64_t>(row));
}

std::optional<qint64> firstRow(SQLite::Statement &statement)
{
    if (!statement.executeStep())
        return std::nullopt;
    return statement.getColumn(0).getInt64();
}

QList<qint64> allRows(SQLite::Statement &statement)
{
    QList<qint64> rows;
    while (statement.executeStep())
        rows += statement.getColumn(0).getInt64();
    return rows;
}
} // namespace

CatalogueRows::CatalogueRows(SQLite::Database &database) : m_database(database), m_statements(database) {}

qint64 CatalogueRows::addFilm(const FilmRecord &film)
{
    auto insert = m_statements.use("INSERT INTO film(is_series, year, season, episode, imdb, poster)"
                                   " VALUES(?, ?, ?, ?, ?, ?)");
    insert->bind(1, film.isSeries ? 1 : 0);
    bindOptional(*insert, 2, film.year);
    bindOptional(*insert, 3, film.season);
    bindOptional(*insert, 4, film.episode);
    bindOptional(*insert, 5, film.imdbNumber);
    if (!film.poster.isEmpty())
        bindBlob(*insert, 6, film.poster);
    insert->exec();
    const qint64 row = m_database.getLastInsertRowid();

    int isMain = 1;
    for (const QString &name : film.titles) {
        const qint64 title = titleRow(name);
        auto join =
            m_statements.use("INSERT OR IGNORE INTO film_title(title_id, film_id, is_main) VALUES(?, ?, ?)");
        bindRow(*join, 1, title);
        bindRow(*join, 2, row);
        join->bind(3, isMain);
        join->exec();
        isMain = 0;
    }
    return row;
}

qint64 CatalogueRows::filmRow(const FilmRecord &film)
{
    {
        auto find = m_statements.use("SELECT f.id FROM title t JOIN film_title x ON x.title_id = t.id"
                                     " JOIN film f ON f.id = x.film_id WHERE t.name = ? AND x.is_main = 1"
                                     " AND f.year IS ? AND f.season IS ? AND f.episode IS ? LIMIT 1");
        find->bind(1, film.titles.first().toStdString());
        bindOptional(*find, 2, film.year);
        bindOptional(*find, 3, film.season);
        bindOptional(*find, 4, film.episode);
        if (const auto row = firstRow(*find))
            return *row;
    }
    return addFilm(film);
}

qint64 CatalogueRows::titleRow(const QString &name)
{
    {
        auto find = m_statements.use("SELECT id FROM title WHERE name = ?");
        find->bind(1, name.toStdString());
        if (const auto row = firstRow(*find))
            return *row;
    }
    auto insert = m_statements.use("INSERT INTO title(name) VALUES(?)");
    insert->bind(1, name.toStdString());
    insert->exec();
    const qint64 row = m_database.getLastInsertRowid();
    auto index = m_statements.use("INSERT INTO title_words(rowid, words) VALUES(?, ?)");
    bindRow(*index, 1, row);
    index->bind(2, searchWords(name).join(u' ').toStdString());
    index->exec();
    return row;
}

qint64 CatalogueRows::addSubtitle(qint64 film, const SubtitleRecord &subtitle, const StoredContent &content)
{
    auto insert =
        m_statements.use("INSERT INTO subtitle(film_id, language, release, format, downloads,"
                         " frames_per_second, hearing_impaired, foreign_parts_only, machine_translated,"
                         " digest, content) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    bindRow(*insert, 1, film);
    insert->bind(2, subtitle.language.toStdString());
    insert->bind(3, subtitle.release.toStdString());
    insert->bind(4, subtitle.format.toStdString());
    bindOptional(*insert, 5, subtitle.downloads);
    bindOptional(*insert, 6, subtitle.framesPerSecond);
    insert->bind(7, subtitle.hearingImpaired ? 1 : 0);
    insert->bind(8, subtitle.foreignPartsOnly ? 1 : 0);
    insert->bind(9, subtitle.machineTranslated ? 1 : 0);
    bindBlob(*insert, 10, content.digest);
    bindBlob(*insert, 11, content.inRow);
    insert->exec();
    const qint64 row = m_database.getLastInsertRowid();
    if (!content.apart.isEmpty()) {
        auto apart = m_statements.use("INSERT INTO content(subtitle_id, packed) VALUES(?, ?)");
        bindRow(*apart, 1, row);
        bindBlob(*apart, 2, content.apart);
        apart->exec();
    }
    addVideo(row, subtitle.videoHash, subtitle.videoSize);
    return row;
}

std::optional<qint64> CatalogueRows::subtitleRow(qint64 film, const SubtitleRecord &subtitle,
                                                 const QByteArray &digest)
{
    auto find = m_statements.use("SELECT id FROM subtitle WHERE film_id = ? AND language = ? AND digest = ?"
                                 " AND release = ? LIMIT 1");
    bindRow(*find, 1, film);
    find->bind(2, subtitle.language.toStdString());
    bindBlob(*find, 3, digest);
    find->bind(4, subtitle.release.toStdString());
    return firstRow(*find);
}

void CatalogueRows::addVideo(qint64 subtitle, const QString &hash, quint64 size)
{
    if (hash.isEmpty())
        return;
    auto video = m_statements.use("INSERT OR IGNORE INTO video(hash, size, subtitle_id) VALUES(?, ?, ?)");
    video->bind(1, hash.toLower().toStdString());
    video->bind(2, static_cast<int64_t>(size));
    bindRow(*video, 3, subtitle);
    video->exec();
}

void CatalogueRows::removeSubtitle(qint64 subtitle)
{
    std::optional<qint64> film;
    {
        auto find = m_statements.use("SELECT film_id FROM subtitle WHERE id = ?");
        bindRow(*find, 1, subtitle);
        film = firstRow(*find);
    }
    for (const char *text :
         {"DELETE FROM content WHERE subtitle_id = ?", "DELETE FROM video WHERE subtitle_id = ?",
          "DELETE FROM subtitle WHERE id = ?"}) {
        auto statement = m_statements.use(text);
        bindRow(*statement, 1, subtitle);
        statement->exec();
    }
    if (!film)
        return;
    auto other = m_statements.use("SELECT 1 FROM subtitle WHERE film_id = ? LIMIT 1");
    bindRow(*other, 1, *film);
    if (!other->executeStep())
        removeFilm(*film);
}

void CatalogueRows::removeFilm(qint64 film)
{
    QList<qint64> titles;
    {
        auto find = m_statements.use("SELECT title_id FROM film_title WHERE film_id = ?");
        bindRow(*find, 1, film);
        titles = allRows(*find);
    }
    for (const char *text : {"DELETE FROM film_title WHERE film_id = ?", "DELETE FROM film WHERE id = ?"}) {
        auto statement = m_statements.use(text);
        bindRow(*statement, 1, film);
        statement->exec();
    }
    for (const qint64 title : titles)
        removeTitleIfUnused(title);
}

void CatalogueRows::removeTitleIfUnused(qint64 title)
{
    std::string name;
    {
        auto find = m_statements.use("SELECT name FROM title WHERE id = ?1 AND NOT EXISTS"
                                     " (SELECT 1 FROM film_title WHERE title_id = ?1)");
        bindRow(*find, 1, title);
        if (!find->executeStep())
            return;
        name = find->getColumn(0).getString();
    }
    // The index stores no texts: a title is removed by passing its words again.
    auto index =
        m_statements.use("INSERT INTO title_words(title_words, rowid, words) VALUES('delete', ?, ?)");
    bindRow(*index, 1, title);
    index->bind(2, searchWords(QString::fromStdString(name)).join(u' ').toStdString());
    index->exec();
    auto statement = m_statements.use("DELETE FROM title WHERE id = ?");
    bindRow(*statement, 1, title);
    statement->exec();
}
