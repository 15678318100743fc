#pragma once
#include <string>
#include <vector>

struct sqlite3;

/// Hears every statement that SQLite runs in this process, with its values in it, from any connection that is
/// opened once the recorder exists. One at a time; one thread.
class SqlRecorder final
{
public:
    SqlRecorder();
    ~SqlRecorder();
    SqlRecorder(const SqlRecorder &) = delete;
    SqlRecorder &operator=(const SqlRecorder &) = delete;

    /// What ran since the last call, queries alone, in order.
    std::vector<std::string> takeQueries();
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
    /// Runs a query and looks at every value of every row; gives the number of rows.
    int read(const std::string &query);

private:
    sqlite3 *m_handle = nullptr;
};
