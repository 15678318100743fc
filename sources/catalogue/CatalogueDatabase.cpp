#include "CatalogueDatabase.h"

#include "CatalogueSchema.h"
#include "Hardening.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QFileInfo>
#include <QLoggingCategory>
#include <QtEndian>

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

QString text(const SQLite::Column &column)
{
    return QString::fromUtf8(column.getText());
}

QByteArray blob(const SQLite::Column &column, qsizetype maxBytes)
{
    const void *data = column.getBlob();
    const int length = column.getBytes();
    return data && length <= maxBytes ? QByteArray(static_cast<const char *>(data), length) : QByteArray();
}

/// Unpacks a content; empty when the bytes are damaged or would unpack to more than a subtitle's limit.
QByteArray unpacked(const QByteArray &bytes)
{
    // The stated size comes first; it determines the allocation.
    constexpr qsizetype SizeBytes = 4;
    if (bytes.size() <= SizeBytes ||
        qFromBigEndian<quint32>(bytes.constData()) > CatalogueDatabase::MaxSubtitleBytes)
        return {};
    const QByteArray content = qUncompress(bytes);
    return content.size() <= CatalogueDatabase::MaxSubtitleBytes ? content : QByteArray();
}

SQLite::Statement rowOf(SQLite::Database &database, const char *text, qint64 value)
{
    SQLite::Statement statement(database, text);
    statement.bind(1, static_cast<int64_t>(value));
    return statement;
}
} // namespace

/// Interrupts a connection's query by SQLITE_INTERRUPT when the read is cancelled or takes too long. Must
/// outlive the connection.
class CatalogueDatabase::QueryInterrupter final
{
public:
    explicit QueryInterrupter(const ReadLimits &limits) : m_limits(limits) { restart(); }

    void attachTo(SQLite::Database &database)
    {
        constexpr int StepsBetweenQuestions = 1000; // of SQLite's virtual machine; well below a millisecond
        sqlite3_progress_handler(database.getHandle(), StepsBetweenQuestions, isOver, this);
    }
    /// Restarts the time limit for the next read.
    void restart() { m_end = std::chrono::steady_clock::now() + m_limits.longest; }
    bool isCancelled() const { return m_limits.isCancelled && m_limits.isCancelled(); }

private:
    static int isOver(void *interrupter)
    {
        const auto &self = *static_cast<const QueryInterrupter *>(interrupter);
        return self.isCancelled() || std::chrono::steady_clock::now() >= self.m_end ? 1 : 0;
    }

    const ReadLimits m_limits;
    std::chrono::steady_clock::time_point m_end;
};

CatalogueDatabase::CatalogueDatabase(const QString &path, const CatalogueErrors &errors,
                                     const ReadLimits &limits)
    : m_interrupter(std::make_unique<QueryInterrupter>(limits)),
      m_database(openForReading(path, BusyTimeoutMilliseconds)),
      m_path(path),
      m_errors(errors)
{
    m_interrupter->attachTo(*m_database);
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
        CatalogueDatabase catalogue(path, errors, limits);
        if (CatalogueSchema::ownerOf(*catalogue.m_database) != CatalogueSchema::Owner::Ours)
            return errors.error(CatalogueFailure::OtherVersion, path);
        CatalogueSchema::verify(*catalogue.m_database);
        return catalogue;
    } catch (const SQLite::Exception &exception) {
        return errors.error(failureOf(exception), path, QString::fromUtf8(exception.what()));
    }
}

/// Runs one read and turns an exception of SQLite into an Error, which is logged unless the read was
/// cancelled.
template <class Read>
auto CatalogueDatabase::guarded(const Read &read) const -> Result<decltype(read())>
{
    m_interrupter->restart();
    try {
        return read();
    } catch (const SQLite::Exception &exception) {
        const base::Error error =
            m_errors.error(failureOf(exception), m_path, QString::fromUtf8(exception.what()));
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
    return guarded([&] {
        return CatalogueQueries::forVideo(*m_database, static_cast<qint64>(size), hash.toLower(), language);
    });
}

Result<QList<CatalogueEntry>> CatalogueDatabase::entriesForText(const QString &text,
                                                                const QString &language) const
{
    return guarded([&] { return CatalogueQueries::forText(*m_database, text, language); });
}

Result<std::optional<CatalogueFile>> CatalogueDatabase::file(qint64 entry) const
{
    return guarded([&]() -> std::optional<CatalogueFile> {
        SQLite::Statement row = rowOf(*m_database,
                                      "SELECT release, format, content, packed FROM subtitle"
                                      " LEFT JOIN content ON subtitle_id = id WHERE id = ?",
                                      entry);
        if (!row.executeStep())
            return std::nullopt;
        const bool isPacked = row.getColumn(2).getBytes() == 0;
        const QByteArray content = blob(row.getColumn(isPacked ? 3 : 2), MaxSubtitleBytes);
        return CatalogueFile{text(row.getColumn(0)), text(row.getColumn(1)),
                             isPacked ? unpacked(content) : content};
    });
}

Result<std::optional<CatalogueFilm>> CatalogueDatabase::filmByImdb(qint64 imdbNumber) const
{
    return guarded([&]() -> std::optional<CatalogueFilm> {
        // Prefer a row with a picture.
        SQLite::Statement row = rowOf(
            *m_database, "SELECT id, is_series FROM film WHERE imdb = ? ORDER BY poster IS NULL, id LIMIT 1",
            imdbNumber);
        if (!row.executeStep())
            return std::nullopt;
        return CatalogueFilm{row.getColumn(0).getInt64(), row.getColumn(1).getInt() != 0};
    });
}

Result<QByteArray> CatalogueDatabase::poster(qint64 film) const
{
    return guarded([&] {
        SQLite::Statement row = rowOf(*m_database, "SELECT poster FROM film WHERE id = ?", film);
        return row.executeStep() ? blob(row.getColumn(0), MaxPosterBytes) : QByteArray();
    });
}
