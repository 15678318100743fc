#pragma once
#include <net/Clock.h>
#include <QObject>
#include <map>

/// Time as a test says. Waits of at most the longest automatic wait pass by themselves on the next turn of
/// the event loop; longer ones (the limits of a request, as a rule) only when the test advances.
class ManualClock final : public Clock
{
public:
    ManualClock();

    Duration now() const override { return m_now; }
    QDateTime date() const override { return m_date; }
    Timer after(Duration delay, std::function<void()> action) override;

    void setLongestAutomaticWait(Duration longest);
    /// Lets time pass, and what falls due meanwhile happen in its order.
    void advance(Duration duration);
    /// Sets the date alone, as a person or the network does.
    void setDate(const QDateTime &date) { m_date = date; }
    /// The delays that are being waited for, the shortest remaining first.
    QList<Duration> pending() const;

private:
    struct Waiting
    {
        std::function<void()> action;
        bool needsAdvance = false;
    };
    using Key = std::pair<Duration, quint64>;
    bool mayPass() const;
    void letShortWaitsPass();
    void advanceTo(Duration time);

    Duration m_now{1'000'000};
    QDateTime m_date;
    Duration m_longestAutomaticWait{5000};
    quint64 m_last = 0;
    std::shared_ptr<std::map<Key, Waiting>> m_waiting;
    QObject m_turns;
    bool m_turnAsked = false;
};
