#include "ManualClock.h"

#include <QTimeZone>
#include <QTimer>

ManualClock::ManualClock()
    : m_date(QDate(2030, 3, 4), QTime(20, 48), Qt::UTC), m_waiting(std::make_shared<std::map<Key, Waiting>>())
{
}

Clock::Timer ManualClock::after(Duration delay, std::function<void()> action)
{
    const Key key{m_now + std::max(delay, Duration::zero()), ++m_last};
    const bool patient = delay > m_patience;
    m_waiting->emplace(key, Waiting{std::move(action), patient});
    if (!patient)
        letShortWaitsPass();
    return Timer([weak = std::weak_ptr(m_waiting), key] {
        if (const auto waiting = weak.lock())
            waiting->erase(key);
    });
}

void ManualClock::setPatience(Duration patience)
{
    m_patience = patience;
}

void ManualClock::letShortWaitsPass()
{
    if (m_turnAsked)
        return;
    m_turnAsked = true;
    QTimer::singleShot(0, &m_turns, [this] {
        m_turnAsked = false;
        for (const auto &[key, waiting] : *m_waiting) {
            if (!waiting.patient) {
                advanceTo(key.first);
                break;
            }
        }
        for (const auto &[key, waiting] : *m_waiting) {
            if (!waiting.patient)
                letShortWaitsPass();
        }
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
