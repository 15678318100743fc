#include "SqlRecorder.h"

#include <QtGlobal>

#include <sqlite3.h>

#include <set>
#include <utility>

namespace
{
struct Recording
{
    std::vector<RecordedQuery> queries;
    std::set<std::string> kinds; // their texts without values
};

Recording &recording()
{
    static Recording recording;
    return recording;
}

/// Queries and the transactions around them; not what the full-text index asks of its own tables meanwhile,
/// which it will ask again.
bool isReplayed(const std::string &text)
{
    if (text.find("'title_words_") != std::string::npos)
        return false;
    return text.rfind("SELECT", 0) == 0 || text == "BEGIN" || text == "ROLLBACK" || text == "COMMIT";
}

int record(unsigned, void *, void *place, void *)
{
    auto *statement = static_cast<sqlite3_stmt *>(place);
    char *text = sqlite3_expanded_sql(statement);
    if (text && isReplayed(text)) {
        const bool isFirst = recording().kinds.insert(sqlite3_sql(statement)).second;
        recording().queries.push_back({text, !isFirst});
    }
    sqlite3_free(text);
    return 0;
}

int listen(sqlite3 *database, const char **, const struct sqlite3_api_routines *)
{
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, record, nullptr);
}

void (*entryPoint())()
{
    return reinterpret_cast<void (*)()>(listen);
}
} // namespace

SqlRecorder::SqlRecorder()
{
    sqlite3_auto_extension(entryPoint());
}

SqlRecorder::~SqlRecorder()
{
    sqlite3_cancel_auto_extension(entryPoint());
}

std::vector<RecordedQuery> SqlRecorder::takeQueries()
{
    return std::exchange(recording(), {}).queries;
}

BareDatabase::BareDatabase(const std::string &path, bool isWritable)
{
    const int flags = isWritable ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READONLY;
    if (sqlite3_open_v2(path.c_str(), &m_handle, flags, nullptr) != SQLITE_OK)
        qFatal("%s cannot be opened", path.c_str());
}

BareDatabase::~BareDatabase()
{
    sqlite3_close(m_handle);
}

void BareDatabase::execute(const char *text)
{
    if (sqlite3_exec(m_handle, text, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", text, sqlite3_errmsg(m_handle));
}

sqlite3_stmt *BareDatabase::prepared(const std::string &query)
{
    sqlite3_stmt *statement = nullptr;
    const int length = static_cast<int>(query.size());
    if (sqlite3_prepare_v2(m_handle, query.c_str(), length, &statement, nullptr) != SQLITE_OK)
        qFatal("%s: %s", query.c_str(), sqlite3_errmsg(m_handle));
    return statement;
}

int BareDatabase::read(const std::string &query)
{
    return read(prepared(query));
}

int BareDatabase::read(sqlite3_stmt *statement)
{
    int rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            sqlite3_column_text(statement, column);
        ++rows;
    }
    sqlite3_finalize(statement);
    return rows;
}
