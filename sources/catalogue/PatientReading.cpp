#include "PatientReading.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

namespace
{
constexpr int StepsBetweenQuestions = 1000; // of SQLite's machine; well below a millisecond
}

PatientReading::PatientReading(SQLite::Database &database, ReadPatience patience)
    : m_database(database), m_patience(std::move(patience))
{
    restart();
    sqlite3_progress_handler(m_database.getHandle(), StepsBetweenQuestions, isOver, this);
}

PatientReading::~PatientReading()
{
    sqlite3_progress_handler(m_database.getHandle(), 0, nullptr, nullptr);
}

void PatientReading::restart()
{
    m_end = std::chrono::steady_clock::now() + m_patience.longest;
}

bool PatientReading::isCancelled() const
{
    return m_patience.isCancelled && m_patience.isCancelled();
}

int PatientReading::isOver(void *reading)
{
    const auto &self = *static_cast<const PatientReading *>(reading);
    return self.isCancelled() || std::chrono::steady_clock::now() >= self.m_end ? 1 : 0;
}
