#include "Hardening.h"

#include "CatalogueDatabase.h"
#include "CatalogueSchema.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <map>
#include <string>
#include <string_view>

namespace
{
struct Limit
{
    int category;
    int most;
};

/// Well above the needs of the program's tables and searches, and far below SQLite's own limits.
constexpr Limit Limits[] = {
    {SQLITE_LIMIT_LENGTH, 2 * CatalogueDatabase::MaxSubtitleBytes},
    {SQLITE_LIMIT_SQL_LENGTH, 100'000},
    {SQLITE_LIMIT_COLUMN, 100},
    {SQLITE_LIMIT_EXPR_DEPTH, 100},
    {SQLITE_LIMIT_COMPOUND_SELECT, 5},
    {SQLITE_LIMIT_VDBE_OP, 25'000},
    {SQLITE_LIMIT_FUNCTION_ARG, 8},
    {SQLITE_LIMIT_ATTACHED, 0},
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 100},
    {SQLITE_LIMIT_VARIABLE_NUMBER, 100},
};

using Tables = std::map<std::string, std::string, std::less<>>; // statements by table name

/// The program's own tables. Their statements end with a semicolon at the end of a line.
Tables ownTables()
{
    constexpr std::string_view Beginnings[] = {"CREATE TABLE ", "CREATE VIRTUAL TABLE "};
    constexpr std::string_view End = ";\n";
    constexpr std::string_view schema = CatalogueSchema::Statements;
    Tables tables;
    for (std::size_t first = schema.find("CREATE "); first != std::string_view::npos;
         first = schema.find("CREATE ", first + 1)) {
        const std::string_view statement = schema.substr(first, schema.find(End, first) - first);
        for (const std::string_view beginning : Beginnings) {
            if (!statement.starts_with(beginning))
                continue;
            const std::string_view rest = statement.substr(beginning.size());
            tables.emplace(rest.substr(0, rest.find_first_of("( ")), statement);
        }
    }
    return tables;
}

/// SQLite creates the FTS shadow tables; reject generated columns, which need the word "as".
constexpr char DoubtfulIndexTables[] =
    "SELECT name FROM sqlite_schema WHERE name LIKE 'title\\_words\\_%' ESCAPE '\\'"
    " AND (type <> 'table' OR sql NOT LIKE 'CREATE TABLE ''title\\_words\\_%' ESCAPE '\\'"
    " OR sql LIKE '%as%') LIMIT 1";

[[noreturn]] void refuse(const std::string &table)
{
    throw SQLite::Exception("the table " + table + " is not one that Plovendix makes", SQLITE_CORRUPT);
}
} // namespace

void distrust(SQLite::Database &database)
{
    sqlite3 *handle = database.getHandle();
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

void harden(SQLite::Database &database)
{
    distrust(database);
    for (const Limit &limit : Limits)
        sqlite3_limit(database.getHandle(), limit.category, limit.most);
    database.exec("PRAGMA cell_size_check = ON");
    database.exec("PRAGMA query_only = ON");
}

void verifySchema(SQLite::Database &database)
{
    Tables missing = ownTables();
    SQLite::Statement statement(database, "SELECT name, sql FROM sqlite_schema WHERE type = 'table'");
    while (statement.executeStep()) {
        const auto expected = missing.find(std::string_view(statement.getColumn(0).getText()));
        if (expected == missing.end())
            continue;
        if (expected->second != statement.getColumn(1).getText())
            refuse(expected->first);
        missing.erase(expected);
    }
    if (!missing.empty())
        refuse(missing.begin()->first);
    SQLite::Statement doubtful(database, DoubtfulIndexTables);
    if (doubtful.executeStep())
        refuse(doubtful.getColumn(0).getText());
}
