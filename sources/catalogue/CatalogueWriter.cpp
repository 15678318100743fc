#include "CatalogueWriter.h"

#include "CatalogueRows.h"
#include "CatalogueSchema.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
base::Error writeError(const SQLite::Exception &exception)
{
    return base::Error{u"Catalogue"_s, exception.getErrorCode(), QString::fromUtf8(exception.what())};
}
} // namespace

CatalogueWriter::CatalogueWriter(std::unique_ptr<SQLite::Database> database) : m_database(std::move(database))
{
    m_transaction = std::make_unique<SQLite::Transaction>(*m_database);
    m_database->exec(CatalogueSchema::Statements);
    m_database->exec("PRAGMA application_id = " + std::to_string(CatalogueSchema::ApplicationId));
    m_database->exec("PRAGMA user_version = " + std::to_string(CatalogueSchema::Version));
    m_rows = std::make_unique<CatalogueRows>(*m_database);
}

CatalogueWriter::~CatalogueWriter() = default;
CatalogueWriter::CatalogueWriter(CatalogueWriter &&) noexcept = default;

Result<CatalogueWriter> CatalogueWriter::create(const QString &path)
{
    if (QFile::exists(path))
        return base::Error{u"Catalogue"_s, 0, u"There is a file at %1 already."_s.arg(path)};
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
        return m_rows->addFilm(film);
    } catch (const SQLite::Exception &exception) {
        return writeError(exception);
    }
}

Result<void> CatalogueWriter::addSubtitle(qint64 film, const SubtitleRecord &subtitle)
{
    try {
        m_rows->addSubtitle(film, subtitle, StoredContent::plain(subtitle.content));
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
