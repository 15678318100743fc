#pragma once
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

/// A statement that ran, and whether one that differs from it in values alone ran before it.
struct RecordedQuery
{
    std::string text;
    bool isRepeated = false;
};

/// Hears every statement that SQLite runs in this process, with its values in it, from any connection that is
/// opened once the recorder exists. One at a time; one thread.
class SqlRecorder final
{
public:
    SqlRecorder();
    ~SqlRecorder();
    SqlRecorder(const SqlRecorder &) = delete;
    SqlRecorder &operator=(const SqlRecorder &) = delete;

    /// What ran since the last call, queries and transactions alone, in order.
    std::vector<RecordedQuery> takeQueries();
};

/// SQLite without anything around it.
class BareDatabase final
{
public:
    explicit BareDatabase(const std::string &path, bool isWritable = false);
    ~BareDatabase();
    BareDatabase(const BareDatabase &) = delete;
    BareDatabase &operator=(const BareDatabase &) = delete;

    sqlite3 *handle() const { return m_handle; }
    void execute(const char *text);
    sqlite3_stmt *prepared(const std::string &query);
    /// Runs a query and looks at every value of every row; gives the number of rows.
    int read(const std::string &query);
    /// The same with a statement that was prepared before, and ends it.
    static int read(sqlite3_stmt *statement);

private:
    sqlite3 *m_handle = nullptr;
};
