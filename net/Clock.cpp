#include "Clock.h"

#include <QPointer>
#include <QTimer>

Clock::~Clock() = default;

Clock::Duration Clock::now() const
{
    return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch());
}

QDateTime Clock::date() const
{
    return QDateTime::currentDateTimeUtc();
}

Clock::Timer Clock::after(Duration delay, std::function<void()> action)
{
    auto *timer = new QTimer(&m_timers);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, std::move(action));
    timer->start(std::max(delay, Duration::zero()));
    return Timer(timer, [held = QPointer<QTimer>(timer)](QTimer *) {
        if (!held)
            return;
        held->stop();
        held->deleteLater(); // the action itself may release the timer
    });
}
