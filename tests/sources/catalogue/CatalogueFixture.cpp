#include "CatalogueFixture.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTest>

CatalogueFixture &CatalogueFixture::film(const QStringList &titles, int year, std::optional<int> season,
                                         std::optional<int> episode)
{
    FilmRecord record;
    record.titles = titles;
    record.year = year;
    record.isSeries = season.has_value();
    record.season = season;
    record.episode = episode;
    m_films += Film{record, {}};
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
    record.content =
        content.isEmpty() ? release.toUtf8() + language + QByteArray::number(downloads) : content;
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
    Result<CatalogueWriter> writer = CatalogueWriter::create(m_path);
    if (!writer)
        qFatal("%s", qUtf8Printable(writer.error().localizedDescription));
    for (const Film &film : m_films) {
        const Result<qint64> row = writer.value().addFilm(film.record);
        bool isWritten = row.hasValue();
        for (const SubtitleRecord &subtitle : film.subtitles)
            isWritten = isWritten && writer.value().addSubtitle(*row, subtitle);
        if (!isWritten)
            qFatal("The catalogue for a test could not be written");
    }
    if (const Result<void> committed = writer.value().commit(); !committed)
        qFatal("%s", qUtf8Printable(committed.error().localizedDescription));
}

QByteArray CatalogueFixture::solidPicture(int width, int height, const char *format)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray encoded;
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return encoded;
}
