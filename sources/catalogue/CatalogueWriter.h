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

/// A film to insert: its titles (the main one first), facts and picture.
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

/// A subtitle to insert, and the video it was made for, if known.
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

/// Writes a catalogue. Only `commit` stores the changes. Errors have the domain "Catalogue" and name the
/// statement that failed; they are for developers, not for the window. One thread.
class CatalogueWriter final
{
public:
    /// Creates a catalogue at a path without a file.
    static Result<CatalogueWriter> create(const QString &path);
    ~CatalogueWriter();
    CatalogueWriter(CatalogueWriter &&) noexcept;
    CatalogueWriter &operator=(CatalogueWriter &&) = delete;

    /// Returns the film's row for `addSubtitle`.
    Result<qint64> addFilm(const FilmRecord &film);
    Result<void> addSubtitle(qint64 film, const SubtitleRecord &subtitle);
    Result<void> commit();

private:
    explicit CatalogueWriter(std::unique_ptr<SQLite::Database> database);

    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<CatalogueRows> m_rows;
    std::unique_ptr<SQLite::Transaction> m_transaction; // destroyed before the database
};
