#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueSchema.h>

#include <QFile>

#include <sqlite3.h>

CatalogueFixture &CatalogueFixture::film(const QStringList &titles, int year, std::optional<int> season,
                                         std::optional<int> episode)
{
    m_films += Film{{titles, season.has_value(), year, season, episode, {}, {}}, {}};
    return *this;
}

CatalogueFixture &CatalogueFixture::withImdb(qint64 number)
{
    m_films.last().record.imdbNumber = number;
    return *this;
}

CatalogueFixture &CatalogueFixture::withPoster(const QByteArray &encoded)
{
    m_films.last().record.poster = encoded;
    return *this;
}

CatalogueFixture &CatalogueFixture::subtitle(const QString &release, qint64 downloads, const char *language,
                                             const QByteArray &content)
{
    SubtitleRecord record;
    record.release = release;
    record.language = QString::fromLatin1(language);
    record.format = QStringLiteral("srt");
    record.downloads = downloads;
    // Different contents unless a test wants duplicates.
    record.content = StoredContent::plain(
        content.isEmpty() ? release.toUtf8() + language + QByteArray::number(downloads) : content);
    m_films.last().subtitles += record;
    return *this;
}

CatalogueFixture &CatalogueFixture::madeFor(const QString &hash, quint64 size)
{
    SubtitleRecord &record = m_films.last().subtitles.last();
    record.videoHash = hash;
    record.videoSize = size;
    return *this;
}

void CatalogueFixture::write() const
{
    QFile::remove(m_path);
    SQLite::Database database(QFile::encodeName(m_path).toStdString(),
                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    SQLite::Transaction transaction(database);
    CatalogueSchema::create(database);
    CatalogueRows rows(database);
    for (const Film &film : m_films) {
        const qint64 row = rows.addFilm(film.record);
        for (const SubtitleRecord &subtitle : film.subtitles)
            rows.addSubtitle(row, subtitle);
    }
    transaction.commit();
}

void CatalogueFixture::forge(const QString &path, const QByteArray &statements)
{
    SQLite::Database database(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE);
    sqlite3_db_config(database.getHandle(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    database.exec(statements.toStdString());
}
