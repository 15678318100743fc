#pragma once
#include <SQLiteCpp/SQLiteCpp.h>
#include <memory>
#include <string_view>
#include <unordered_map>

/// Caches compiled statements. The texts are literals; the database must outlive this object.
class PreparedStatements final
{
public:
    /// One use of a statement; its destructor releases locks and values.
    class Use final
    {
    public:
        explicit Use(SQLite::Statement &statement) : m_statement(statement) {}
        ~Use()
        {
            m_statement.tryReset();
            try {
                m_statement.clearBindings();
            } catch (const SQLite::Exception &) {
                return; // bound values that stay do no harm
            }
        }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;
        SQLite::Statement *operator->() { return &m_statement; }
        SQLite::Statement &operator*() { return m_statement; }

    private:
        SQLite::Statement &m_statement;
    };

    explicit PreparedStatements(SQLite::Database &database) : m_database(database) {}

    Use use(const char *text)
    {
        std::unique_ptr<SQLite::Statement> &kept = m_statements[text];
        if (!kept)
            kept = std::make_unique<SQLite::Statement>(m_database, text);
        return Use(*kept);
    }

private:
    SQLite::Database &m_database;
    std::unordered_map<std::string_view, std::unique_ptr<SQLite::Statement>> m_statements;
};
