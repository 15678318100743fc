#include "CatalogueDatabase.h"

#include "CatalogueQueries.h"
#include "CatalogueSchema.h"
#include "Hardening.h"
#include "QueryInterrupter.h"
#include "ReadableFile.h"
#include "StoredContent.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QFileInfo>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(catalogueLog, "plovendix.services.catalogue")

constexpr int BusyTimeoutMilliseconds = 2000; // an import may be writing to the person's own catalogue

CatalogueFailure failureOf(const SQLite::Exception &exception)
{
    switch (exception.getErrorCode()) {
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_READONLY: // there is a log that cannot be read in this folder
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_IOERR:
    case SQLITE_NOMEM:
        return CatalogueFailure::Unreadable;
    case SQLITE_INTERRUPT:
        return CatalogueFailure::TooSlow;
    default:
        return CatalogueFailure::Damaged;
    }
}

bool isReadable(SQLite::Database &database)
{
    return database.execAndGet("PRAGMA application_id").getInt() == CatalogueSchema::ApplicationId &&
           database.execAndGet("PRAGMA user_version").getInt() == CatalogueSchema::Version;
}

QByteArray blob(const SQLite::Column &column, qsizetype maxBytes)
{
    const void *data = column.getBlob();
    const int length = column.getBytes();
    return data && length <= maxBytes ? QByteArray(static_cast<const char *>(data), length) : QByteArray();
}

/// Reads a packed content, which is stored apart from its subtitle row.
QByteArray packedContent(SQLite::Database &database, qint64 entry)
{
    SQLite::Statement statement(database, "SELECT packed FROM content WHERE subtitle_id = ?");
    statement.bind(1, static_cast<int64_t>(entry));
    if (!statement.executeStep())
        return {};
    return StoredContent::unpacked(blob(statement.getColumn(0), CatalogueDatabase::MaxSubtitleBytes));
}
} // namespace

CatalogueDatabase::CatalogueDatabase(std::unique_ptr<SQLite::Database> database,
                                     std::unique_ptr<QueryInterrupter> interrupter, const QString &path,
                                     const CatalogueErrors &errors)
    : m_database(std::move(database)), m_interrupter(std::move(interrupter)), m_path(path), m_errors(errors)
{
}

CatalogueDatabase::~CatalogueDatabase() = default;
CatalogueDatabase::CatalogueDatabase(CatalogueDatabase &&) noexcept = default;

Result<CatalogueDatabase> CatalogueDatabase::open(const QString &path, const CatalogueErrors &errors,
                                                  const ReadLimits &limits)
{
    const QFileInfo info(path);
    if (!info.exists())
        return errors.error(CatalogueFailure::Missing, path);
    // Opening a pipe or device would block.
    if (!info.isFile())
        return errors.error(CatalogueFailure::Unreadable, path, u"not a regular file"_s);
    try {
        std::unique_ptr<SQLite::Database> database = readableFile(path, BusyTimeoutMilliseconds);
        auto interrupter = std::make_unique<QueryInterrupter>(*database, limits);
        if (!isReadable(*database))
            return errors.error(CatalogueFailure::OtherVersion, path);
        verifySchema(*database);
        return CatalogueDatabase(std::move(database), std::move(interrupter), path, errors);
    } catch (const SQLite::Exception &exception) {
        return errors.error(failureOf(exception), path, QString::fromUtf8(exception.what()));
    }
}

/// Runs one read and turns an exception of SQLite into an Error. Each damaged file is checked once, for the
/// log; a cancelled search is not logged.
template <class Value>
Result<Value> CatalogueDatabase::guarded(const std::function<Value()> &read) const
{
    m_interrupter->restart();
    try {
        return read();
    } catch (const SQLite::Exception &exception) {
        const CatalogueFailure failure = failureOf(exception);
        const base::Error error = m_errors.error(failure, m_path, QString::fromUtf8(exception.what()));
        if (!m_interrupter->isCancelled())
            qCWarning(catalogueLog, "%s: %s", qUtf8Printable(m_path), qUtf8Printable(error.detail));
        return error;
    }
}

Result<QList<CatalogueEntry>> CatalogueDatabase::entriesForVideo(quint64 size, const QString &hash,
                                                                 const QString &language) const
{
    if (size > quint64(std::numeric_limits<qint64>::max()))
        return QList<CatalogueEntry>();
    return guarded<QList<CatalogueEntry>>([&] {
        return CatalogueQueries::forVideo(*m_database, static_cast<qint64>(size), hash.toLower(), language);
    });
}

Result<QList<CatalogueEntry>> CatalogueDatabase::entriesForText(const QString &text,
                                                                const QString &language) const
{
    return guarded<QList<CatalogueEntry>>(
        [&] { return CatalogueQueries::forText(*m_database, text, language); });
}

Result<std::optional<CatalogueFile>> CatalogueDatabase::file(qint64 entry) const
{
    return guarded<std::optional<CatalogueFile>>([&]() -> std::optional<CatalogueFile> {
        SQLite::Statement statement(*m_database,
                                    "SELECT release, format, content FROM subtitle WHERE id = ?");
        statement.bind(1, static_cast<int64_t>(entry));
        if (!statement.executeStep())
            return std::nullopt;
        const bool isApart = statement.getColumn(2).getBytes() == 0;
        return CatalogueFile{QString::fromUtf8(statement.getColumn(0).getText()),
                             QString::fromUtf8(statement.getColumn(1).getText()),
                             isApart ? packedContent(*m_database, entry)
                                     : blob(statement.getColumn(2), MaxSubtitleBytes)};
    });
}

Result<std::optional<CatalogueFilm>> CatalogueDatabase::filmByImdb(qint64 imdbNumber) const
{
    return guarded<std::optional<CatalogueFilm>>([&]() -> std::optional<CatalogueFilm> {
        // Prefer a row with a picture.
        SQLite::Statement statement(*m_database, "SELECT id, is_series FROM film WHERE imdb = ?"
                                                 " ORDER BY poster IS NULL, id LIMIT 1");
        statement.bind(1, static_cast<int64_t>(imdbNumber));
        if (!statement.executeStep())
            return std::nullopt;
        return CatalogueFilm{statement.getColumn(0).getInt64(), statement.getColumn(1).getInt() != 0};
    });
}

Result<QByteArray> CatalogueDatabase::poster(qint64 film) const
{
    return guarded<QByteArray>([&] {
        SQLite::Statement statement(*m_database, "SELECT poster FROM film WHERE id = ?");
        statement.bind(1, static_cast<int64_t>(film));
        return statement.executeStep() ? blob(statement.getColumn(0), MaxPosterBytes) : QByteArray();
    });
}
