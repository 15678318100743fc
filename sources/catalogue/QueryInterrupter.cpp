#include "QueryInterrupter.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

namespace
{
constexpr int StepsBetweenQuestions = 1000; // steps of SQLite's virtual machine; well below a millisecond
}

QueryInterrupter::QueryInterrupter(SQLite::Database &database, ReadLimits limits)
    : m_database(database), m_limits(std::move(limits))
{
    restart();
    sqlite3_progress_handler(m_database.getHandle(), StepsBetweenQuestions, isOver, this);
}

QueryInterrupter::~QueryInterrupter()
{
    sqlite3_progress_handler(m_database.getHandle(), 0, nullptr, nullptr);
}

void QueryInterrupter::restart()
{
    m_end = std::chrono::steady_clock::now() + m_limits.longest;
}

bool QueryInterrupter::isCancelled() const
{
    return m_limits.isCancelled && m_limits.isCancelled();
}

int QueryInterrupter::isOver(void *reading)
{
    const auto &self = *static_cast<const QueryInterrupter *>(reading);
    return self.isCancelled() || std::chrono::steady_clock::now() >= self.m_end ? 1 : 0;
}
