#include "OwnCatalogue.h"

#include "CatalogueStore.h"

#include <sources/catalogue/CatalogueRows.h>

using namespace Qt::StringLiterals;

namespace
{
int64_t sqlInt(qint64 value)
{
    return static_cast<int64_t>(value);
}

QList<qint64> firstColumn(SQLite::Statement &statement)
{
    QList<qint64> rows;
    while (statement.executeStep())
        rows += statement.getColumn(0).getInt64();
    return rows;
}
} // namespace

OwnCatalogue::OwnCatalogue(std::unique_ptr<SQLite::Database> database, const QString &path,
                           const CatalogueStore::WaitLimits *limits)
    : m_database(std::move(database)),
      m_rows(std::make_unique<CatalogueRows>(*m_database)),
      m_statements(std::make_unique<PreparedStatements>(*m_database)),
      m_path(path),
      m_waitLimits(limits)
{
}

OwnCatalogue::~OwnCatalogue() = default;
OwnCatalogue::OwnCatalogue(OwnCatalogue &&) noexcept = default;

Result<OwnCatalogue> OwnCatalogue::open(const QString &path, const CatalogueStore::WaitLimits *limits)
{
    Result<std::unique_ptr<SQLite::Database>> database = CatalogueStore::openForWriting(path, limits);
    if (!database)
        return database.error();
    return OwnCatalogue(std::move(database.value()), path, limits);
}

/// Takes the write lock at the beginning: SQLite cannot wait for it within a transaction that has read.
template <class Value, class Work>
Result<Value> OwnCatalogue::inTransaction(const Work &work)
{
    try {
        m_database->exec("BEGIN IMMEDIATE");
        Value value = work();
        m_database->exec("COMMIT");
        return value;
    } catch (const SQLite::Exception &exception) {
        m_database->tryExec("ROLLBACK");
        return CatalogueStore::error(m_path, exception);
    }
}

Result<OwnCatalogue::SourceState> OwnCatalogue::stateOf(const QString &path, const QString &stamp)
{
    try {
        auto find = m_statements->use("SELECT is_whole FROM source WHERE path = ? AND stamp = ?");
        find->bind(1, path.toStdString());
        find->bind(2, stamp.toStdString());
        if (!find->executeStep())
            return SourceState::Unknown;
        return find->getColumn(0).getInt() != 0 ? SourceState::Whole : SourceState::Begun;
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(m_path, exception);
    }
}

Result<bool> OwnCatalogue::hasMember(const QString &path, qint64 member)
{
    try {
        auto find = m_statements->use("SELECT 1 FROM source s JOIN origin o ON o.source_id = s.id"
                                      " WHERE s.path = ? AND o.member = ?");
        find->bind(1, path.toStdString());
        find->bind(2, sqlInt(member));
        return find->executeStep();
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(m_path, exception);
    }
}

Result<OwnCatalogue::Entered> OwnCatalogue::enter(const QList<SourceStep> &steps)
{
    return inTransaction<Entered>([&] {
        Entered counts;
        for (const SourceStep &step : steps)
            enterStep(step, counts);
        return counts;
    });
}

void OwnCatalogue::enterStep(const SourceStep &step, Entered &counts)
{
    const qint64 source = sourceRow(step);
    for (const ReadSubtitle &subtitle : step.subtitles)
        enterSubtitle(source, subtitle, counts);
    if (step.isWhole)
        execute("UPDATE source SET is_whole = ?1 WHERE id = ?2", 1, source);
}

qint64 OwnCatalogue::sourceRow(const SourceStep &step)
{
    {
        auto find = m_statements->use("SELECT id, stamp FROM source WHERE path = ?");
        find->bind(1, step.path.toStdString());
        if (find->executeStep()) {
            const qint64 source = find->getColumn(0).getInt64();
            if (find->getColumn(1).getString() == step.stamp.toStdString())
                return source;
            forgetOrigins(source);
            auto update = m_statements->use("UPDATE source SET stamp = ?, is_whole = 0 WHERE id = ?");
            update->bind(1, step.stamp.toStdString());
            update->bind(2, sqlInt(source));
            update->exec();
            return source;
        }
    }
    auto insert = m_statements->use("INSERT INTO source(path, stamp) VALUES(?, ?)");
    insert->bind(1, step.path.toStdString());
    insert->bind(2, step.stamp.toStdString());
    insert->exec();
    return m_database->getLastInsertRowid();
}

void OwnCatalogue::enterSubtitle(qint64 source, const ReadSubtitle &subtitle, Entered &counts)
{
    {
        auto origin = m_statements->use("SELECT 1 FROM origin WHERE source_id = ? AND member = ?");
        origin->bind(1, sqlInt(source));
        origin->bind(2, sqlInt(subtitle.member));
        if (origin->executeStep()) {
            ++counts.duplicates;
            return;
        }
    }
    const qint64 film = m_rows->filmRow(subtitle.film);
    std::optional<qint64> row = m_rows->subtitleRow(film, subtitle.record, subtitle.content.digest);
    if (row) {
        m_rows->addVideo(*row, subtitle.record.videoHash, subtitle.record.videoSize);
        ++counts.duplicates;
    } else {
        row = m_rows->addSubtitle(film, subtitle.record, subtitle.content);
        ++counts.added;
    }
    auto insert = m_statements->use("INSERT INTO origin(source_id, member, subtitle_id) VALUES(?, ?, ?)");
    insert->bind(1, sqlInt(source));
    insert->bind(2, sqlInt(subtitle.member));
    insert->bind(3, sqlInt(*row));
    insert->exec();
}

void OwnCatalogue::execute(const char *text, qint64 first, qint64 second)
{
    auto statement = m_statements->use(text);
    statement->bind(1, sqlInt(first));
    statement->bind(2, sqlInt(second));
    statement->exec();
}

/// Removes a subtitle with its last origin.
void OwnCatalogue::forgetOrigins(qint64 source)
{
    QList<qint64> orphans;
    {
        auto find = m_statements->use("SELECT DISTINCT o.subtitle_id FROM origin o WHERE o.source_id = ?1"
                                      " AND NOT EXISTS (SELECT 1 FROM origin x WHERE"
                                      " x.subtitle_id = o.subtitle_id AND x.source_id <> ?1)");
        find->bind(1, sqlInt(source));
        orphans = firstColumn(*find);
    }
    auto forget = m_statements->use("DELETE FROM origin WHERE source_id = ?");
    forget->bind(1, sqlInt(source));
    forget->exec();
    for (const qint64 subtitle : orphans)
        m_rows->removeSubtitle(subtitle);
}

QList<qint64> OwnCatalogue::sourcesBelow(const QString &path, qint64 maxSources)
{
    // All names that begin with "folder/" sort between "folder/" and "folder0".
    const QString folder = path.endsWith(u'/') ? path : path + u'/';
    const QString behind = folder.chopped(1) + u'0';
    auto find = m_statements->use("SELECT id FROM source WHERE path = ?1"
                                  " OR (path >= ?2 AND path < ?3) LIMIT ?4");
    find->bind(1, path.toStdString());
    find->bind(2, folder.toStdString());
    find->bind(3, behind.toStdString());
    find->bind(4, sqlInt(maxSources));
    return firstColumn(*find);
}

Result<bool> OwnCatalogue::knowsBelow(const QString &path)
{
    try {
        return !sourcesBelow(path, 1).isEmpty();
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(m_path, exception);
    }
}

Result<qint64> OwnCatalogue::removeBelow(const QString &path, qint64 maxSources)
{
    return inTransaction<qint64>([&]() -> qint64 {
        const QList<qint64> sources = sourcesBelow(path, maxSources);
        for (const qint64 source : sources) {
            forgetOrigins(source);
            auto remove = m_statements->use("DELETE FROM source WHERE id = ?");
            remove->bind(1, sqlInt(source));
            remove->exec();
        }
        return sources.size();
    });
}

Result<void> OwnCatalogue::vacuum()
{
    const QStringList faults = CatalogueStore::faults(*m_database);
    if (!faults.isEmpty())
        return CatalogueStore::error(m_path, u"is damaged: "_s + faults.first(), CatalogueFailure::Damaged);
    try {
        m_database->exec("INSERT INTO title_words(title_words) VALUES('optimize')");
        m_database->exec("VACUUM");
        m_database->exec("ANALYZE");
        checkpoint();
        return {};
    } catch (const SQLite::Exception &exception) {
        return CatalogueStore::error(m_path, exception);
    }
}

void OwnCatalogue::checkpoint()
{
    m_database->setBusyTimeout(0); // do not wait for readers
    m_database->tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
    CatalogueStore::waitForWriters(*m_database, m_waitLimits);
}
