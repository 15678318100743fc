#include "MainQueue.h"

#include <QCoreApplication>
#include <QObject>
#include <QThread>
#include <QTimerEvent>

#include <algorithm>
#include <deque>
#include <mutex>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;

struct DelayedBlock
{
    Clock::time_point due;
    std::function<void()> block;
};

const QEvent::Type WakeUp = static_cast<QEvent::Type>(QEvent::registerEventType());
} // namespace

/// The receiver of the one posted wake-up; lives on the main thread.
class MainQueue::Private final : public QObject
{
public:
    Clock::time_point now() const { return m_manual ? m_manualNow : Clock::now(); }

    void push(std::function<void()> block)
    {
        const std::scoped_lock lock(m_mutex);
        m_ready.push_back(std::move(block));
        wakeUpLocked();
    }

    void pushAfter(std::chrono::milliseconds delay, std::function<void()> block)
    {
        const std::scoped_lock lock(m_mutex);
        const DelayedBlock entry{now() + delay, std::move(block)};
        const auto place =
            std::upper_bound(m_delayed.begin(), m_delayed.end(), entry,
                             [](const DelayedBlock &a, const DelayedBlock &b) { return a.due < b.due; });
        m_delayed.insert(place, entry);
        wakeUpLocked();
    }

    /// Moves what has fallen due behind what is ready, runs one batch, and arms the timer for the next.
    void runBatch()
    {
        if (m_running)
            return;
        std::size_t batch = 0;
        {
            const std::scoped_lock lock(m_mutex);
            m_wakeUpPosted = false;
            promoteDueLocked();
            batch = m_ready.size();
        }
        m_running = true;
        for (; batch > 0; --batch) {
            std::function<void()> block;
            {
                const std::scoped_lock lock(m_mutex);
                if (m_ready.empty())
                    break;
                block = std::move(m_ready.front());
                m_ready.pop_front();
            }
            block();
        }
        m_running = false;
        rearm();
    }

    bool hasReadyBlocks()
    {
        const std::scoped_lock lock(m_mutex);
        promoteDueLocked();
        return !m_ready.empty();
    }

    void setManual(bool manual)
    {
        const std::scoped_lock lock(m_mutex);
        m_manual = manual;
        m_manualNow = Clock::now();
    }

    void advance(std::chrono::milliseconds duration)
    {
        const std::scoped_lock lock(m_mutex);
        m_manualNow += duration;
        wakeUpLocked();
    }

    void clear()
    {
        const std::scoped_lock lock(m_mutex);
        m_ready.clear();
        m_delayed.clear();
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == WakeUp) {
            runBatch();
            return true;
        }
        return QObject::event(event);
    }

    void timerEvent(QTimerEvent *event) override
    {
        killTimer(event->timerId());
        m_timer = 0;
        runBatch();
    }

private:
    void wakeUpLocked()
    {
        if (m_wakeUpPosted)
            return;
        m_wakeUpPosted = true;
        QCoreApplication::postEvent(this, new QEvent(WakeUp));
    }

    void promoteDueLocked()
    {
        const Clock::time_point present = now();
        while (!m_delayed.empty() && m_delayed.front().due <= present) {
            m_ready.push_back(std::move(m_delayed.front().block));
            m_delayed.erase(m_delayed.begin());
        }
    }

    void rearm()
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_ready.empty())
            wakeUpLocked();
        if (m_timer != 0)
            killTimer(m_timer);
        m_timer = 0;
        if (!m_delayed.empty() && !m_manual) {
            const auto wait =
                std::chrono::ceil<std::chrono::milliseconds>(m_delayed.front().due - Clock::now()).count();
            m_timer = startTimer(static_cast<int>(std::clamp<long long>(wait, 0, 86'400'000)));
        }
    }

    std::mutex m_mutex; // guards the four below
    std::deque<std::function<void()>> m_ready;
    std::vector<DelayedBlock> m_delayed; // by due time
    Clock::time_point m_manualNow;
    bool m_manual = false;
    bool m_wakeUpPosted = false;

    bool m_running = false; // main thread only, like the timer
    int m_timer = 0;
};

MainQueue::MainQueue() : d(std::make_unique<Private>()) {}
MainQueue::~MainQueue() = default;

MainQueue &MainQueue::shared()
{
    // Never destroyed: a late completion may still queue while the process winds down.
    static auto *queue = new MainQueue;
    return *queue;
}

void MainQueue::async(std::function<void()> block)
{
    d->push(std::move(block));
}

void MainQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> block)
{
    d->pushAfter(delay, std::move(block));
}

bool MainQueue::isMainThread()
{
    return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

void MainQueue::useManualClock()
{
    d->setManual(true);
}
void MainQueue::useSystemClock()
{
    d->setManual(false);
}
void MainQueue::advance(std::chrono::milliseconds duration)
{
    d->advance(duration);
}

void MainQueue::runUntilIdle()
{
    while (d->hasReadyBlocks())
        d->runBatch();
}

void MainQueue::clear()
{
    d->clear();
}
