#include "ManualClock.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>

ManualClock::ManualClock()
    : m_date(QDate(2030, 3, 4), QTime(20, 48), Qt::UTC), m_waiting(std::make_shared<std::map<Key, Waiting>>())
{
}

Clock::Timer ManualClock::after(Duration delay, std::function<void()> action)
{
    const Key key{m_now + std::max(delay, Duration::zero()), ++m_last};
    const bool needsAdvance = delay > m_longestAutomaticWait;
    m_waiting->emplace(key, Waiting{std::move(action), needsAdvance});
    letShortWaitsPass();
    return Timer(&m_turns, [this, alive = QPointer<QObject>(&m_turns), weak = std::weak_ptr(m_waiting),
                            key](QObject *) {
        if (const auto waiting = weak.lock())
            waiting->erase(key);
        if (alive)
            letShortWaitsPass();
    });
}

void ManualClock::setLongestAutomaticWait(Duration longest)
{
    m_longestAutomaticWait = longest;
}

/// While something is on the wire (its limits are being waited for) time stands still, so that what a server
/// sees does not depend on how fast this machine is.
bool ManualClock::mayPass() const
{
    const auto needsAdvance = [](const auto &entry) { return entry.second.needsAdvance; };
    return !m_waiting->empty() && std::none_of(m_waiting->begin(), m_waiting->end(), needsAdvance);
}

void ManualClock::letShortWaitsPass()
{
    if (m_turnAsked || !mayPass())
        return;
    m_turnAsked = true;
    QTimer::singleShot(0, &m_turns, [this] {
        m_turnAsked = false;
        if (mayPass())
            advanceTo(m_waiting->begin()->first.first);
        letShortWaitsPass();
    });
}

void ManualClock::advance(Duration duration)
{
    advanceTo(m_now + duration);
}

void ManualClock::advanceTo(Duration time)
{
    const auto moveTo = [this](Duration moment) {
        m_date = m_date.addDuration(moment - m_now);
        m_now = moment;
    };
    while (!m_waiting->empty() && m_waiting->begin()->first.first <= time) {
        auto first = m_waiting->extract(m_waiting->begin());
        moveTo(std::max(m_now, first.key().first));
        first.mapped().action();
    }
    moveTo(std::max(m_now, time));
}

QList<Clock::Duration> ManualClock::pending() const
{
    QList<Duration> delays;
    for (const auto &[key, waiting] : *m_waiting)
        delays += key.first - m_now;
    return delays;
}
