#pragma once
#include "CatalogueWriter.h"
#include "PreparedStatements.h"
#include "StoredContent.h"

/// Inserts and removes rows of an open catalogue; the caller holds the transaction. Functions throw
/// SQLite::Exception. One thread.
class CatalogueRows final
{
public:
    explicit CatalogueRows(SQLite::Database &database);

    qint64 addFilm(const FilmRecord &film);
    /// The film of the same main title, year, season and episode; a new row when there is none.
    qint64 filmRow(const FilmRecord &film);

    qint64 addSubtitle(qint64 film, const SubtitleRecord &subtitle, const StoredContent &content);
    /// A subtitle of the film with the same release, language and content.
    std::optional<qint64> subtitleRow(qint64 film, const SubtitleRecord &subtitle, const QByteArray &digest);
    void addVideo(qint64 subtitle, const QString &hash, quint64 size);

    /// Removes the subtitle, and with a film's last one also the film and its unshared titles.
    void removeSubtitle(qint64 subtitle);

private:
    qint64 titleRow(const QString &name);
    void removeFilm(qint64 film);
    void removeTitleIfUnused(qint64 title);

    SQLite::Database &m_database;
    PreparedStatements m_statements;
};
