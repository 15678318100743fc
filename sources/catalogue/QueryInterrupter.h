#pragma once
#include <chrono>
#include <functional>

namespace SQLite
{
class Database;
}

/// How long a catalogue may keep whoever reads it. An honest one answers in milliseconds; the limit leaves
/// room for a slow disk.
struct ReadLimits
{
    std::chrono::milliseconds longest{15'000}; // of one look into it: its opening, or one search
    std::function<bool()> isCancelled = {};    // asked again and again on the reading thread; none: never
};

/// Stops whatever a connection does, by SQLITE_INTERRUPT, once the reading is cancelled or has taken too
/// long. One thread; the database outlives it.
class QueryInterrupter final
{
public:
    QueryInterrupter(SQLite::Database &database, ReadLimits limits);
    ~QueryInterrupter();
    QueryInterrupter(const QueryInterrupter &) = delete;
    QueryInterrupter &operator=(const QueryInterrupter &) = delete;

    /// The time limit begins anew, for the next read.
    void restart();
    bool isCancelled() const;

private:
    static int isOver(void *reading);

    SQLite::Database &m_database;
    ReadLimits m_limits;
    std::chrono::steady_clock::time_point m_end;
};
