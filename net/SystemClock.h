#pragma once
#include "Clock.h"

#include <QObject>

/// The machine's clocks. Main thread only.
class SystemClock final : public Clock
{
public:
    Duration now() const override;
    QDateTime date() const override;
    Timer after(Duration delay, std::function<void()> action) override;

private:
    QObject m_timers; // parent of the running timers
};
