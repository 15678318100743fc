#pragma once
#include <QDateTime>
#include <functional>

/// The time a stand-in goes by: the machine's, or a test's.
struct StandInTime
{
    std::function<qint64()> milliseconds;
    std::function<QDateTime()> date;
};
