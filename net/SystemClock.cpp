#include "SystemClock.h"

#include <QPointer>
#include <QTimer>

Clock::Duration SystemClock::now() const
{
    return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch());
}

QDateTime SystemClock::date() const
{
    return QDateTime::currentDateTimeUtc();
}

Clock::Timer SystemClock::after(Duration delay, std::function<void()> action)
{
    auto *timer = new QTimer(&m_timers);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action = std::move(action)] {
        timer->deleteLater();
        action();
    });
    timer->start(std::max(delay, Duration::zero()));
    return Timer([held = QPointer<QTimer>(timer)] {
        if (!held)
            return;
        held->stop();
        held->deleteLater();
    });
}
