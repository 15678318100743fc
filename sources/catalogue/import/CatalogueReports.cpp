#include "CatalogueReports.h"

#include "CatalogueStore.h"

#include <sources/catalogue/Hardening.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
constexpr int BusyTimeoutMilliseconds = 10'000;

constexpr const char *Figures[] = {
    "SELECT 'bytes', page_count * page_size FROM pragma_page_count, pragma_page_size",
    "SELECT 'subtitles', count(*) FROM subtitle",
    "SELECT 'films', count(*) FROM film",
    "SELECT 'titles', count(*) FROM title",
    "SELECT 'videos', count(*) FROM (SELECT DISTINCT hash, size FROM video)",
    "SELECT 'sources', count(*) FROM source",
    "SELECT 'unfinished', count(*) FROM source WHERE is_whole = 0",
    "SELECT 'language', language, count(*) n FROM subtitle GROUP BY 2 ORDER BY n DESC, 2",
    "SELECT 'format', format, count(*) n FROM subtitle GROUP BY 2 ORDER BY n DESC, 2",
};

Result<void> reading(const QString &path, const std::function<void(SQLite::Database &)> &read)
{
    if (!QFileInfo(path).isFile())
        return CatalogueStore::error(path, u"there is no catalogue yet"_s);
    try {
        const std::unique_ptr<SQLite::Database> database = openForReading(path, BusyTimeoutMilliseconds);
        if (const std::optional<base::Error> refused = CatalogueStore::refusal(*database, path))
            return *refused;
        read(*database);
        return {};
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(path, exception);
    }
}

QStringList rowOf(SQLite::Statement &statement)
{
    QStringList row;
    for (int column = 0; column < statement.getColumnCount(); ++column)
        row += QString::fromUtf8(statement.getColumn(column).getText());
    return row;
}
} // namespace

Result<void> CatalogueReports::list(const QString &path, const QString &language,
                                    const std::function<bool(const QStringList &)> &take)
{
    return reading(path, [&](SQLite::Database &database) {
        SQLite::Statement statement(database, "SELECT s.release, s.language, s.format, c.path FROM subtitle s"
                                              " LEFT JOIN origin o ON o.subtitle_id = s.id"
                                              " LEFT JOIN source c ON c.id = o.source_id"
                                              " WHERE ?1 = '' OR s.language = ?1 ORDER BY s.id");
        statement.bind(1, language.toStdString());
        while (statement.executeStep()) {
            if (!take(rowOf(statement)))
                return;
        }
    });
}

Result<QList<QStringList>> CatalogueReports::figures(const QString &path)
{
    QList<QStringList> rows;
    const Result<void> read = reading(path, [&](SQLite::Database &database) {
        for (const char *figure : Figures) {
            SQLite::Statement statement(database, figure);
            while (statement.executeStep())
                rows += rowOf(statement);
        }
    });
    return read ? Result<QList<QStringList>>(rows) : read.error();
}
