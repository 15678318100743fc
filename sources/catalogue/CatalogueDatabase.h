#pragma once
#include "CatalogueEntry.h"
#include "CatalogueErrors.h"
#include "QueryInterrupter.h"

#include <base/Result.h>
#include <QList>
#include <functional>
#include <optional>

namespace SQLite
{
class Database;
}

/// One catalogue file, opened for reading only. Used by one thread at a time.
/// Whatever the file holds, a function gives rows or an Error: a foreign, cut or overwritten file, values of
/// the wrong type, texts of any length and tables that would take hours are met with bounds, never trusted.
class CatalogueDatabase final
{
public:
    static constexpr qsizetype MaxSubtitleBytes = 8'388'608;
    static constexpr qsizetype MaxPosterBytes = 5'242'880;

    static Result<CatalogueDatabase> open(const QString &path, const CatalogueErrors &errors,
                                          const ReadLimits &limits = {});
    ~CatalogueDatabase();
    CatalogueDatabase(CatalogueDatabase &&) noexcept;
    CatalogueDatabase &operator=(CatalogueDatabase &&) = delete;

    /// The subtitles in `language` of the film that a video of this size and hash shows; those made for
    /// exactly this video say so. An empty language stands for all.
    Result<QList<CatalogueEntry>> entriesForVideo(quint64 size, const QString &hash,
                                                  const QString &language) const;
    /// The subtitles in `language` of the films whose title answers the text.
    Result<QList<CatalogueEntry>> entriesForText(const QString &text, const QString &language) const;

    /// A subtitle's content; nothing when the row is gone.
    Result<std::optional<CatalogueFile>> file(qint64 entry) const;
    Result<std::optional<CatalogueFilm>> filmByImdb(qint64 imdbNumber) const;
    /// A film's picture as it is stored; empty when it has none.
    Result<QByteArray> poster(qint64 film) const;

private:
    CatalogueDatabase(std::unique_ptr<SQLite::Database> database,
                      std::unique_ptr<QueryInterrupter> interrupter, const QString &path,
                      const CatalogueErrors &errors);

    template <class Value>
    Result<Value> guarded(const std::function<Value()> &read) const;

    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<QueryInterrupter> m_interrupter; // lets go of the database before it closes
    QString m_path;
    CatalogueErrors m_errors;
};
