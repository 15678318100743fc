#pragma once
#include "PreparedStatements.h"

#include <QStringList>

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

/// A subtitle's content as a catalogue stores it: plain, or packed in a separate table.
struct StoredContent
{
    QByteArray digest; // SHA-1 of the content
    QByteArray inRow;
    QByteArray apart;

    static StoredContent plain(const QByteArray &content);
    static StoredContent packed(const QByteArray &content);
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
    StoredContent content;
    QString videoHash;
    quint64 videoSize = 0;
};

/// Inserts and removes rows of an open catalogue; the caller holds the transaction. Functions throw
/// SQLite::Exception. One thread.
class CatalogueRows final
{
public:
    explicit CatalogueRows(SQLite::Database &database) : m_statements(database) {}

    qint64 addFilm(const FilmRecord &film);
    /// The film of the same main title, year, season and episode; a new row when there is none.
    qint64 filmRow(const FilmRecord &film);

    qint64 addSubtitle(qint64 film, const SubtitleRecord &subtitle);
    /// A subtitle of the film with the same release, language and content.
    std::optional<qint64> subtitleRow(qint64 film, const SubtitleRecord &subtitle);
    /// Joins a subtitle to the video of its record, if there is one.
    void addVideo(qint64 row, const SubtitleRecord &subtitle);

    /// Removes the subtitle, and with a film's last one also the film and its unshared titles.
    void removeSubtitle(qint64 subtitle);

private:
    qint64 titleRow(const QString &name);
    void removeFilm(qint64 film);
    void removeTitleIfUnused(qint64 title);

    PreparedStatements m_statements;
};
