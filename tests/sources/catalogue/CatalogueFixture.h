#pragma once
#include <sources/catalogue/CatalogueRows.h>
#include <tests/support/Sandbox.h>

/// The video that tests enter a subtitle for.
inline const QString Hash = QStringLiteral("00112233445566ff");
inline constexpr quint64 Size = 5'000'000'000;

/// Builds catalogues for tests, by the rows that the program itself writes.
class CatalogueFixture final
{
public:
    explicit CatalogueFixture(const Sandbox &sandbox, const QString &name) : m_path(sandbox.path(name)) {}

    const QString &path() const { return m_path; }

    /// Films are entered in this order; the subtitles of the last one follow it.
    CatalogueFixture &film(const QStringList &titles, int year, std::optional<int> season = {},
                           std::optional<int> episode = {});
    CatalogueFixture &withImdb(qint64 number);
    CatalogueFixture &withPoster(const QByteArray &encoded);
    CatalogueFixture &subtitle(const QString &release, qint64 downloads, const char *language = "eng",
                               const QByteArray &content = {});
    CatalogueFixture &madeFor(const QString &hash, quint64 size);
    /// Writes the file, replacing what was there.
    void write() const;

    /// Changes a finished file by statements that the program would never run.
    static void forge(const QString &path, const QByteArray &statements);

private:
    struct Film
    {
        FilmRecord record;
        QList<SubtitleRecord> subtitles;
    };

    QString m_path;
    QList<Film> m_films;
};
