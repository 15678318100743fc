#include "OwnCatalogue.h"

using namespace Qt::StringLiterals;

namespace
{
/// Takes the write lock at the beginning of a transaction: SQLite cannot wait for it within one that has
/// read.
constexpr auto WriteLock = SQLite::TransactionBehavior::IMMEDIATE;
} // namespace

OwnCatalogue::OwnCatalogue(std::unique_ptr<SQLite::Database> database, const QString &path,
                           CatalogueStore::WaitLimits *limits)
    : m_database(std::move(database)),
      m_rows(*m_database),
      m_statements(*m_database),
      m_path(path),
      m_waitLimits(limits)
{
}

Result<OwnCatalogue> OwnCatalogue::open(const QString &path, CatalogueStore::WaitLimits *limits)
{
    Result<std::unique_ptr<SQLite::Database>> database = CatalogueStore::openForWriting(path, limits);
    if (!database)
        return database.error();
    return OwnCatalogue(std::move(database.value()), path, limits);
}

base::Error OwnCatalogue::error(const SQLite::Exception &exception) const
{
    return CatalogueStore::error(m_path, exception);
}

bool OwnCatalogue::isWhole(const QString &path, const QString &stamp)
{
    return m_statements.has("SELECT 1 FROM source WHERE path = ? AND stamp = ? AND is_whole", path, stamp);
}

bool OwnCatalogue::hasMember(const QString &path, qint64 member)
{
    return m_statements.has("SELECT 1 FROM source s JOIN origin o ON o.source_id = s.id"
                            " WHERE s.path = ? AND o.member = ?",
                            path, member);
}

OwnCatalogue::Entered OwnCatalogue::enter(const QList<SourceStep> &steps)
{
    SQLite::Transaction transaction(*m_database, WriteLock);
    Entered counts;
    for (const SourceStep &step : steps) {
        const qint64 source = sourceRow(step);
        for (const ReadSubtitle &subtitle : step.subtitles)
            enterSubtitle(source, subtitle, counts);
        if (step.isWhole)
            m_statements.run("UPDATE source SET is_whole = 1 WHERE id = ?", source);
    }
    transaction.commit();
    return counts;
}

qint64 OwnCatalogue::sourceRow(const SourceStep &step)
{
    const auto known = m_statements.first("SELECT id FROM source WHERE path = ?", step.path);
    if (!known)
        return m_statements.insert("INSERT INTO source(path, stamp) VALUES(?, ?)", step.path, step.stamp);
    if (!m_statements.has("SELECT 1 FROM source WHERE id = ? AND stamp = ?", *known, step.stamp)) {
        forgetOrigins(*known);
        m_statements.run("UPDATE source SET stamp = ?, is_whole = 0 WHERE id = ?", step.stamp, *known);
    }
    return *known;
}

void OwnCatalogue::enterSubtitle(qint64 source, const ReadSubtitle &subtitle, Entered &counts)
{
    if (m_statements.has("SELECT 1 FROM origin WHERE source_id = ? AND member = ?", source,
                         subtitle.member)) {
        ++counts.duplicates;
        return;
    }
    const qint64 film = m_rows.filmRow(subtitle.film);
    std::optional<qint64> row = m_rows.subtitleRow(film, subtitle.record);
    if (row) {
        m_rows.addVideo(*row, subtitle.record);
        ++counts.duplicates;
    } else {
        row = m_rows.addSubtitle(film, subtitle.record);
        ++counts.added;
    }
    m_statements.run("INSERT INTO origin(source_id, member, subtitle_id) VALUES(?, ?, ?)", source,
                     subtitle.member, *row);
}

/// Removes a subtitle with its last origin.
void OwnCatalogue::forgetOrigins(qint64 source)
{
    const QList<qint64> orphans =
        m_statements.all("SELECT DISTINCT o.subtitle_id FROM origin o WHERE o.source_id = ?1 AND NOT EXISTS"
                         " (SELECT 1 FROM origin x WHERE x.subtitle_id = o.subtitle_id"
                         "  AND x.source_id <> ?1)",
                         source);
    m_statements.run("DELETE FROM origin WHERE source_id = ?", source);
    for (const qint64 subtitle : orphans)
        m_rows.removeSubtitle(subtitle);
}

QList<qint64> OwnCatalogue::sourcesBelow(const QString &path, qint64 maxSources)
{
    // All names that begin with "folder/" sort between "folder/" and "folder0".
    const QString folder = path.endsWith(u'/') ? path : path + u'/';
    const QString behind = folder.chopped(1) + u'0';
    return m_statements.all("SELECT id FROM source WHERE path = ? OR (path >= ? AND path < ?) LIMIT ?", path,
                            folder, behind, maxSources);
}

bool OwnCatalogue::knowsBelow(const QString &path)
{
    return !sourcesBelow(path, 1).isEmpty();
}

qint64 OwnCatalogue::removeBelow(const QString &path, qint64 maxSources)
{
    SQLite::Transaction transaction(*m_database, WriteLock);
    const QList<qint64> sources = sourcesBelow(path, maxSources);
    for (const qint64 source : sources) {
        forgetOrigins(source);
        m_statements.run("DELETE FROM source WHERE id = ?", source);
    }
    transaction.commit();
    return sources.size();
}

QStringList OwnCatalogue::faults()
{
    try {
        QStringList found;
        SQLite::Statement check(*m_database, "PRAGMA integrity_check(20)");
        while (check.executeStep()) {
            if (const QString line = QString::fromUtf8(check.getColumn(0).getText()); line != "ok"_L1)
                found += line;
        }
        m_database->exec("INSERT INTO title_words(title_words) VALUES('integrity-check')");
        return found;
    } catch (const SQLite::Exception &exception) {
        return {QString::fromUtf8(exception.what())};
    }
}

Result<void> OwnCatalogue::vacuum()
{
    if (const QStringList found = faults(); !found.isEmpty())
        return CatalogueStore::error(m_path, u"is damaged: "_s + found.first(), CatalogueFailure::Damaged);
    m_database->exec("INSERT INTO title_words(title_words) VALUES('optimize')");
    m_database->exec("VACUUM");
    m_database->exec("ANALYZE");
    checkpoint();
    return {};
}

void OwnCatalogue::checkpoint()
{
    m_database->setBusyTimeout(0); // do not wait for readers
    m_database->tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
    CatalogueStore::waitForWriters(*m_database, m_waitLimits);
}
