#include "MainQueue.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
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

/// Receives the posted wake-up event on the main thread.
class MainQueue::Private final : public QObject
{
public:
    Clock::time_point now() const { return m_manual ? m_manualNow : Clock::now(); }

    void push(std::function<void()> block)
    {
        const std::scoped_lock lock(m_mutex);
        promoteDueLocked();
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

    /// Appends the delayed blocks that are due to the ready ones, runs the blocks that are ready now, and
    /// posts a wake-up for the rest, so that events are handled between batches. Does nothing while a block
    /// runs.
    void runBatch()
    {
        if (m_running)
            return;
        const Turn turn(*this);
        for (std::size_t left = readyBlocks(); left > 0; --left) {
            const std::function<void()> block = takeFirst();
            if (!block)
                break;
            block();
        }
    }

    bool isRunning() const { return m_running; }

    std::size_t readyBlocks()
    {
        const std::scoped_lock lock(m_mutex);
        promoteDueLocked();
        return m_ready.size();
    }

    void setManual(bool manual)
    {
        const std::scoped_lock lock(m_mutex);
        m_manual = manual;
        m_manualNow = Clock::now();
        wakeUpLocked();
    }

    void advance(std::chrono::milliseconds duration)
    {
        const std::scoped_lock lock(m_mutex);
        m_manualNow += duration;
        wakeUpLocked();
    }

    void clear()
    {
        // Destroyed outside the lock, because destroying a block may queue another one.
        std::deque<std::function<void()>> ready;
        std::vector<DelayedBlock> delayed;
        const std::scoped_lock lock(m_mutex);
        ready.swap(m_ready);
        delayed.swap(m_delayed);
    }

protected:
    bool event(QEvent *event) override
    {
        if (!takeWakeUp(*event))
            return QObject::event(event);
        runBatch();
        return true;
    }

    void timerEvent(QTimerEvent *event) override
    {
        killTimer(event->timerId());
        m_timer = 0;
        runBatch();
    }

private:
    /// Marks a batch as running. The destructor ends it also when a block throws, as a fatal fault does in
    /// tests.
    class Turn final
    {
    public:
        explicit Turn(Private &queue) : m_queue(queue) { m_queue.m_running = true; }
        ~Turn()
        {
            m_queue.m_running = false;
            m_queue.rearm();
        }
        Turn(const Turn &) = delete;
        Turn &operator=(const Turn &) = delete;

    private:
        Private &m_queue;
    };

    std::function<void()> takeFirst()
    {
        const std::scoped_lock lock(m_mutex);
        if (m_ready.empty())
            return {};
        std::function<void()> block = std::move(m_ready.front());
        m_ready.pop_front();
        return block;
    }

    /// The wake-up is consumed even while a block runs; the end of that batch posts the next one. The lock
    /// orders the posting thread's work on the event before ours.
    bool takeWakeUp(const QEvent &event)
    {
        const std::scoped_lock lock(m_mutex);
        if (event.type() != WakeUp)
            return false;
        m_wakeUpPosted = false;
        return true;
    }

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

    std::mutex m_mutex; // guards the five below
    std::deque<std::function<void()>> m_ready;
    std::vector<DelayedBlock> m_delayed; // by due time
    Clock::time_point m_manualNow;
    bool m_manual = false;
    bool m_wakeUpPosted = false;

    bool m_running = false; // main thread only, like the timer
    int m_timer = 0;
};

MainQueue::MainQueue() : d(std::make_unique<Private>())
{
    if (QCoreApplication::instance())
        d->moveToThread(QCoreApplication::instance()->thread());
}
MainQueue::~MainQueue() = default;

MainQueue &MainQueue::shared()
{
    // Never destroyed, because a late completion may queue a block while the process ends.
    static auto *queue = new MainQueue;
    return *queue;
}

void MainQueue::async(std::function<void()> block)
{
    d->push(std::move(block));
}

void MainQueue::async(QObject *context, std::function<void()> block)
{
    Q_ASSERT(isMainThread());
    async([alive = QPointer(context), block = std::move(block)] {
        if (alive)
            block();
    });
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
    while (!d->isRunning() && d->readyBlocks() > 0)
        d->runBatch();
}

void MainQueue::clear()
{
    d->clear();
}
