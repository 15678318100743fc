#pragma once
#include <base/Result.h>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

namespace SQLite
{
class Database;
class Transaction;
} // namespace SQLite
class CatalogueRows;

/// A film to be entered: its titles (the main one first), facts and picture.
struct FilmRecord
{
    QStringList titles;
    bool isSeries = false;
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
    std::optional<qint64> imdbNumber;
    QByteArray poster; // an encoded picture
};

/// A subtitle to be entered, and the video it was made for where that is known.
struct SubtitleRecord
{
    QString release;
    QString language; // three letters
    QString format;
    std::optional<qint64> downloads;
    std::optional<double> framesPerSecond;
    bool hearingImpaired = false;
    bool foreignPartsOnly = false;
    bool machineTranslated = false;
    QByteArray content;
    QString videoHash;
    quint64 videoSize = 0;
};

/// Writes a catalogue. Nothing is kept before `commit`. Errors have the domain "Catalogue" and name the
/// statement that failed; they are for whoever builds a catalogue, not for the window. One thread.
class CatalogueWriter final
{
public:
    /// A new catalogue at a path where no file is yet.
    static Result<CatalogueWriter> create(const QString &path);
    ~CatalogueWriter();
    CatalogueWriter(CatalogueWriter &&) noexcept;
    CatalogueWriter &operator=(CatalogueWriter &&) = delete;

    /// Gives the film's row, which `addSubtitle` takes.
    Result<qint64> addFilm(const FilmRecord &film);
    Result<void> addSubtitle(qint64 film, const SubtitleRecord &subtitle);
    Result<void> commit();

private:
    explicit CatalogueWriter(std::unique_ptr<SQLite::Database> database);

    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<CatalogueRows> m_rows;
    std::unique_ptr<SQLite::Transaction> m_transaction; // after the database: it must end first
};
