#include "CatalogueRows.h"

#include "SearchWords.h"

#include <QCryptographicHash>

namespace
{
constexpr int PackingEffort = 6;

QByteArray digestOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

QString indexedWords(const QString &title)
{
    return searchWords(title).join(u' ');
}
} // namespace

StoredContent StoredContent::plain(const QByteArray &content)
{
    return {digestOf(content), content, {}};
}

StoredContent StoredContent::packed(const QByteArray &content)
{
    return {digestOf(content), {}, qCompress(content, PackingEffort)};
}

qint64 CatalogueRows::addFilm(const FilmRecord &film)
{
    const auto poster = film.poster.isEmpty() ? std::nullopt : std::optional(film.poster);
    const qint64 row =
        m_statements.insert("INSERT INTO film(is_series, year, season, episode, imdb, poster)"
                            " VALUES(?, ?, ?, ?, ?, ?)",
                            film.isSeries, film.year, film.season, film.episode, film.imdbNumber, poster);
    bool isMain = true;
    for (const QString &name : film.titles) {
        m_statements.run("INSERT OR IGNORE INTO film_title(title_id, film_id, is_main) VALUES(?, ?, ?)",
                         titleRow(name), row, isMain);
        isMain = false;
    }
    return row;
}

qint64 CatalogueRows::filmRow(const FilmRecord &film)
{
    const auto row = m_statements.first("SELECT f.id FROM title t JOIN film_title x ON x.title_id = t.id"
                                        " JOIN film f ON f.id = x.film_id WHERE t.name = ? AND x.is_main = 1"
                                        " AND f.year IS ? AND f.season IS ? AND f.episode IS ? LIMIT 1",
                                        film.titles.first(), film.year, film.season, film.episode);
    return row ? *row : addFilm(film);
}

qint64 CatalogueRows::titleRow(const QString &name)
{
    if (const auto row = m_statements.first("SELECT id FROM title WHERE name = ?", name))
        return *row;
    const qint64 row = m_statements.insert("INSERT INTO title(name) VALUES(?)", name);
    m_statements.run("INSERT INTO title_words(rowid, words) VALUES(?, ?)", row, indexedWords(name));
    return row;
}

qint64 CatalogueRows::addSubtitle(qint64 film, const SubtitleRecord &subtitle)
{
    const qint64 row = m_statements.insert(
        "INSERT INTO subtitle(film_id, language, release, format, downloads, frames_per_second,"
        " hearing_impaired, foreign_parts_only, machine_translated, digest, content)"
        " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        film, subtitle.language, subtitle.release, subtitle.format, subtitle.downloads,
        subtitle.framesPerSecond, subtitle.hearingImpaired, subtitle.foreignPartsOnly,
        subtitle.machineTranslated, subtitle.content.digest, subtitle.content.inRow);
    if (!subtitle.content.apart.isEmpty())
        m_statements.run("INSERT INTO content(subtitle_id, packed) VALUES(?, ?)", row,
                         subtitle.content.apart);
    addVideo(row, subtitle);
    return row;
}

std::optional<qint64> CatalogueRows::subtitleRow(qint64 film, const SubtitleRecord &subtitle)
{
    return m_statements.first("SELECT id FROM subtitle WHERE film_id = ? AND language = ? AND digest = ?"
                              " AND release = ? LIMIT 1",
                              film, subtitle.language, subtitle.content.digest, subtitle.release);
}

void CatalogueRows::addVideo(qint64 row, const SubtitleRecord &subtitle)
{
    if (!subtitle.videoHash.isEmpty())
        m_statements.run("INSERT OR IGNORE INTO video(hash, size, subtitle_id) VALUES(?, ?, ?)",
                         subtitle.videoHash.toLower(), subtitle.videoSize, row);
}

void CatalogueRows::removeSubtitle(qint64 subtitle)
{
    const auto film = m_statements.first("SELECT film_id FROM subtitle WHERE id = ?", subtitle);
    m_statements.run("DELETE FROM content WHERE subtitle_id = ?", subtitle);
    m_statements.run("DELETE FROM video WHERE subtitle_id = ?", subtitle);
    m_statements.run("DELETE FROM subtitle WHERE id = ?", subtitle);
    if (film && !m_statements.has("SELECT 1 FROM subtitle WHERE film_id = ?", *film))
        removeFilm(*film);
}

void CatalogueRows::removeFilm(qint64 film)
{
    const QList<qint64> titles = m_statements.all("SELECT title_id FROM film_title WHERE film_id = ?", film);
    m_statements.run("DELETE FROM film_title WHERE film_id = ?", film);
    m_statements.run("DELETE FROM film WHERE id = ?", film);
    for (const qint64 title : titles)
        removeTitleIfUnused(title);
}

void CatalogueRows::removeTitleIfUnused(qint64 title)
{
    QString name;
    {
        auto find = m_statements.use("SELECT name FROM title WHERE id = ?1 AND NOT EXISTS"
                                     " (SELECT 1 FROM film_title WHERE title_id = ?1)",
                                     title);
        if (!find->executeStep())
            return;
        name = QString::fromStdString(find->getColumn(0).getString());
    }
    // The index stores no texts: a title is removed by passing its words again.
    m_statements.run("INSERT INTO title_words(title_words, rowid, words) VALUES('delete', ?, ?)", title,
                     indexedWords(name));
    m_statements.run("DELETE FROM title WHERE id = ?", title);
}
