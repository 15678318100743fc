#include "CatalogueReports.h"

#include "CatalogueStore.h"

#include <sources/catalogue/CatalogueSchema.h>
#include <sources/catalogue/ReadableFile.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
constexpr int BusyTimeoutMilliseconds = 10'000;

template <class Value>
Result<Value> reading(const QString &path, const std::function<Value(SQLite::Database &)> &read)
{
    if (!QFileInfo(path).isFile())
        return CatalogueStore::error(path, u"there is no catalogue yet"_s);
    try {
        const std::unique_ptr<SQLite::Database> database = readableFile(path, BusyTimeoutMilliseconds);
        if (database->execAndGet("PRAGMA application_id").getInt() != CatalogueSchema::ApplicationId)
            return CatalogueStore::error(path, u"is not a subtitle catalogue"_s);
        if (database->execAndGet("PRAGMA user_version").getInt() != CatalogueSchema::Version)
            return CatalogueStore::error(path, u"was made by another version of Plovendix"_s);
        return read(*database);
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(path, QString::fromUtf8(exception.what()));
    }
}

QString textOf(const SQLite::Column &column)
{
    return QString::fromUtf8(column.getText());
}

qint64 number(SQLite::Database &database, const char *text)
{
    return database.execAndGet(text).getInt64();
}

QList<std::pair<QString, qint64>> shares(SQLite::Database &database, const char *text)
{
    QList<std::pair<QString, qint64>> result;
    SQLite::Statement statement(database, text);
    while (statement.executeStep())
        result += {textOf(statement.getColumn(0)), statement.getColumn(1).getInt64()};
    return result;
}
} // namespace

Result<void> CatalogueReports::list(const QString &path, const QString &language,
                                    const std::function<bool(const Line &)> &take)
{
    const Result<bool> done = reading<bool>(path, [&](SQLite::Database &database) {
        SQLite::Statement statement(database, "SELECT s.release, s.language, s.format, c.path FROM subtitle s"
                                              " LEFT JOIN origin o ON o.subtitle_id = s.id"
                                              " LEFT JOIN source c ON c.id = o.source_id"
                                              " WHERE ?1 = '' OR s.language = ?1 ORDER BY s.id");
        statement.bind(1, language.toStdString());
        bool isWanted = true;
        while (isWanted && statement.executeStep()) {
            isWanted = take({textOf(statement.getColumn(0)), textOf(statement.getColumn(1)),
                             textOf(statement.getColumn(2)), textOf(statement.getColumn(3))});
        }
        return true;
    });
    return done ? Result<void>() : done.error();
}

Result<CatalogueReports::Figures> CatalogueReports::figures(const QString &path)
{
    return reading<Figures>(path, [](SQLite::Database &database) {
        Figures figures;
        figures.subtitles = number(database, "SELECT count(*) FROM subtitle");
        figures.films = number(database, "SELECT count(*) FROM film");
        figures.titles = number(database, "SELECT count(*) FROM title");
        figures.videos = number(database, "SELECT count(*) FROM (SELECT DISTINCT hash, size FROM video)");
        figures.sources = number(database, "SELECT count(*) FROM source");
        figures.unfinishedSources = number(database, "SELECT count(*) FROM source WHERE is_whole = 0");
        figures.bytes = number(database, "PRAGMA page_count") * number(database, "PRAGMA page_size");
        figures.languages =
            shares(database, "SELECT language, count(*) n FROM subtitle GROUP BY 1 ORDER BY n DESC, 1");
        figures.formats =
            shares(database, "SELECT format, count(*) n FROM subtitle GROUP BY 1 ORDER BY n DESC, 1");
        return figures;
    });
}

Result<QStringList> CatalogueReports::faults(const QString &path)
{
    const Result<std::unique_ptr<SQLite::Database>> database =
        QFileInfo::exists(path) ? CatalogueStore::openForWriting(path)
                                : CatalogueStore::error(path, u"there is no catalogue yet"_s);
    if (!database)
        return database.error();
    return CatalogueStore::faults(**database);
}
