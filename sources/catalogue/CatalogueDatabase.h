#pragma once
#include "CatalogueErrors.h"
#include "CatalogueQueries.h"

#include <base/Result.h>
#include <chrono>
#include <functional>
#include <memory>

/// A film's picture, or that of an episode's series.
struct CatalogueFilm
{
    qint64 id = 0;
    bool isSeries = false;
};

/// The content that a download writes.
struct CatalogueFile
{
    QString release;
    QString format;
    QByteArray content;
};

/// The limits of one read. A sound catalogue answers in milliseconds; the time limit allows for a slow disk.
struct ReadLimits
{
    std::chrono::milliseconds longest{15'000}; // for opening the file or for one search
    std::function<bool()> isCancelled = {};    // polled on the reading thread; empty for never
};

/// One catalogue file, opened for reading only. One thread at a time. Each function returns rows or an Error
/// for any content: foreign, truncated or overwritten files, values of a wrong type, texts of any length and
/// tables that would take hours to read are limited.
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

    /// The subtitles in `language` of the film in a video of this size and hash; those made for exactly this
    /// video are marked. An empty language means all.
    Result<QList<CatalogueEntry>> entriesForVideo(quint64 size, const QString &hash,
                                                  const QString &language) const;
    /// The subtitles in `language` of the films whose title matches the text.
    Result<QList<CatalogueEntry>> entriesForText(const QString &text, const QString &language) const;

    /// A subtitle's content; none when the row no longer exists.
    Result<std::optional<CatalogueFile>> file(qint64 entry) const;
    Result<std::optional<CatalogueFilm>> filmByImdb(qint64 imdbNumber) const;
    /// A film's encoded picture; empty when it has none.
    Result<QByteArray> poster(qint64 film) const;

private:
    class QueryInterrupter;
    CatalogueDatabase(const QString &path, const CatalogueErrors &errors, const ReadLimits &limits);

    template <class Read>
    auto guarded(const Read &read) const -> Result<decltype(read())>;

    std::unique_ptr<QueryInterrupter> m_interrupter; // outlives the database
    std::unique_ptr<SQLite::Database> m_database;
    QString m_path;
    CatalogueErrors m_errors;
};
