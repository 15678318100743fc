#include "CatalogueWriter.h"

#include "CatalogueSchema.h"
#include "SearchWords.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QCryptographicHash>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
Error writeError(const SQLite::Exception &exception)
{
    return Error{u"Catalogue"_s, exception.getErrorCode(), QString::fromUtf8(exception.what())};
}

template <class Value>
void bindOptional(SQLite::Statement &statement, int index, const std::optional<Value> &value)
{
    if constexpr (std::is_integral_v<Value>) {
        if (value)
            return statement.bind(index, static_cast<int64_t>(*value));
    } else {
        if (value)
            return statement.bind(index, *value);
    }
    statement.bind(index);
}

void bindBlob(SQLite::Statement &statement, int index, const QByteArray &bytes)
{
    statement.bind(index, bytes.constData(), static_cast<int>(bytes.size()));
}
} // namespace

CatalogueWriter::CatalogueWriter(std::unique_ptr<SQLite::Database> database) : m_database(std::move(database))
{
    m_transaction = std::make_unique<SQLite::Transaction>(*m_database);
    m_database->exec(CatalogueSchema::Statements);
    m_database->exec("PRAGMA application_id = " + std::to_string(CatalogueSchema::ApplicationId));
    m_database->exec("PRAGMA user_version = " + std::to_string(CatalogueSchema::Version));
}

CatalogueWriter::~CatalogueWriter() = default;
CatalogueWriter::CatalogueWriter(CatalogueWriter &&) noexcept = default;

Result<CatalogueWriter> CatalogueWriter::create(const QString &path)
{
    if (QFile::exists(path))
        return Error{u"Catalogue"_s, 0, u"There is a file at %1 already."_s.arg(path)};
    try {
        return CatalogueWriter(std::make_unique<SQLite::Database>(
            QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE));
    } catch (const SQLite::Exception &exception) {
        return writeError(exception);
    }
}

Result<qint64> CatalogueWriter::addFilm(const FilmRecord &film)
{
    try {
        SQLite::Statement insert(*m_database,
                                 "INSERT INTO film(is_series, year, season, episode, imdb, poster)"
                                 " VALUES(?, ?, ?, ?, ?, ?)");
        insert.bind(1, film.isSeries ? 1 : 0);
        bindOptional(insert, 2, film.year);
        bindOptional(insert, 3, film.season);
        bindOptional(insert, 4, film.episode);
        bindOptional(insert, 5, film.imdbNumber);
        if (!film.poster.isEmpty())
            bindBlob(insert, 6, film.poster);
        insert.exec();
        const int64_t row = m_database->getLastInsertRowid();

        int isMain = 1;
        for (const QString &name : film.titles) {
            SQLite::Statement join(*m_database, "INSERT OR IGNORE INTO film_title(title_id, film_id, is_main)"
                                                " VALUES(?, ?, ?)");
            join.bind(1, static_cast<int64_t>(titleRow(name)));
            join.bind(2, row);
            join.bind(3, isMain);
            join.exec();
            isMain = 0;
        }
        return qint64(row);
    } catch (const SQLite::Exception &exception) {
        return writeError(exception);
    }
}

qint64 CatalogueWriter::titleRow(const QString &name)
{
    SQLite::Statement find(*m_database, "SELECT id FROM title WHERE name = ?");
    find.bind(1, name.toStdString());
    if (find.executeStep())
        return find.getColumn(0).getInt64();

    SQLite::Statement insert(*m_database, "INSERT INTO title(name) VALUES(?)");
    insert.bind(1, name.toStdString());
    insert.exec();
    const int64_t row = m_database->getLastInsertRowid();
    SQLite::Statement index(*m_database, "INSERT INTO title_words(rowid, words) VALUES(?, ?)");
    index.bind(1, row);
    index.bind(2, searchWords(name).join(u' ').toStdString());
    index.exec();
    return row;
}

Result<void> CatalogueWriter::addSubtitle(qint64 film, const SubtitleRecord &subtitle)
{
    try {
        SQLite::Statement insert(
            *m_database, "INSERT INTO subtitle(film_id, language, release, format, downloads,"
                         " frames_per_second, hearing_impaired, foreign_parts_only, machine_translated,"
                         " digest, content) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        insert.bind(1, static_cast<int64_t>(film));
        insert.bind(2, subtitle.language.toStdString());
        insert.bind(3, subtitle.release.toStdString());
        insert.bind(4, subtitle.format.toStdString());
        bindOptional(insert, 5, subtitle.downloads);
        bindOptional(insert, 6, subtitle.framesPerSecond);
        insert.bind(7, subtitle.hearingImpaired ? 1 : 0);
        insert.bind(8, subtitle.foreignPartsOnly ? 1 : 0);
        insert.bind(9, subtitle.machineTranslated ? 1 : 0);
        bindBlob(insert, 10, QCryptographicHash::hash(subtitle.content, QCryptographicHash::Sha1));
        bindBlob(insert, 11, subtitle.content);
        insert.exec();
        if (subtitle.videoHash.isEmpty())
            return {};

        SQLite::Statement video(*m_database, "INSERT INTO video(hash, size, subtitle_id) VALUES(?, ?, ?)");
        video.bind(2, static_cast<int64_t>(subtitle.videoSize));
        video.bind(3, m_database->getLastInsertRowid());
        video.bind(1, subtitle.videoHash.toLower().toStdString());
        video.exec();
        return {};
    } catch (const SQLite::Exception &exception) {
        return writeError(exception);
    }
}

Result<void> CatalogueWriter::commit()
{
    try {
        m_database->exec("INSERT INTO title_words(title_words) VALUES('optimize')");
        m_transaction->commit();
        return {};
    } catch (const SQLite::Exception &exception) {
        return writeError(exception);
    }
}
