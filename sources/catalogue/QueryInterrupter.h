#pragma once
#include <chrono>
#include <functional>

namespace SQLite
{
class Database;
}

/// The limits of one read. A sound catalogue answers in milliseconds; the time limit allows for a slow disk.
struct ReadLimits
{
    std::chrono::milliseconds longest{15'000}; // for opening the file or for one search
    std::function<bool()> isCancelled = {};    // polled on the reading thread; empty for never
};

/// Interrupts a connection's query by SQLITE_INTERRUPT when the read is cancelled or takes too long. One
/// thread; the database must outlive this object.
class QueryInterrupter final
{
public:
    QueryInterrupter(SQLite::Database &database, ReadLimits limits);
    ~QueryInterrupter();
    QueryInterrupter(const QueryInterrupter &) = delete;
    QueryInterrupter &operator=(const QueryInterrupter &) = delete;

    /// Restarts the time limit for the next read.
    void restart();
    bool isCancelled() const;

private:
    static int isOver(void *reading);

    SQLite::Database &m_database;
    ReadLimits m_limits;
    std::chrono::steady_clock::time_point m_end;
};
