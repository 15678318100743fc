#include "MainQueue.h"

#include <QCoreApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QThread>
#include <QTimerEvent>

#include <algorithm>

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace
{
const QEvent::Type WakeUp = static_cast<QEvent::Type>(QEvent::registerEventType());
} // namespace

MainQueue::MainQueue()
{
    if (QCoreApplication::instance())
        moveToThread(QCoreApplication::instance()->thread());
}

MainQueue &MainQueue::shared()
{
    // Never destroyed, because a late completion may queue a block while the process ends.
    static auto *queue = new MainQueue;
    return *queue;
}

void MainQueue::async(std::function<void()> block)
{
    const std::scoped_lock lock(m_mutex);
    promoteDueLocked();
    m_ready.push_back(std::move(block));
    wakeUpLocked();
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
    const std::scoped_lock lock(m_mutex);
    m_delayed.emplace(nowLocked() + delay, std::move(block));
    wakeUpLocked();
}

bool MainQueue::isMainThread()
{
    return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

void MainQueue::setManual(bool manual)
{
    const std::scoped_lock lock(m_mutex);
    m_isManual = manual;
    m_manualNow = steady_clock::now();
    wakeUpLocked();
}

void MainQueue::advance(std::chrono::milliseconds duration)
{
    const std::scoped_lock lock(m_mutex);
    m_manualNow += duration;
    wakeUpLocked();
}

void MainQueue::runUntilIdle()
{
    while (!m_isRunning && readyBlocks() > 0)
        runBatch();
}

void MainQueue::clear()
{
    // Destroyed outside the lock, because destroying a block may queue another one.
    decltype(m_ready) ready;
    decltype(m_delayed) delayed;
    const std::scoped_lock lock(m_mutex);
    ready.swap(m_ready);
    delayed.swap(m_delayed);
}

/// The wake-up is consumed even while a block runs; the end of that batch posts the next one. The lock orders
/// the posting thread's work on the event before ours.
bool MainQueue::event(QEvent *event)
{
    std::unique_lock lock(m_mutex);
    if (event->type() != WakeUp) {
        lock.unlock();
        return QObject::event(event);
    }
    m_isWakeUpPosted = false;
    lock.unlock();
    runBatch();
    return true;
}

void MainQueue::timerEvent(QTimerEvent *)
{
    m_timer.stop();
    runBatch();
}

/// Runs the blocks that are ready now and posts a wake-up for the rest, so that events are handled between
/// batches. Does nothing while a block runs. A batch ends also when a block throws, as a fatal fault does in
/// tests.
void MainQueue::runBatch()
{
    if (m_isRunning)
        return;
    m_isRunning = true;
    const auto end = qScopeGuard([this] { rearm(); });
    for (std::size_t left = readyBlocks(); left > 0; --left) {
        if (const std::function<void()> block = takeFirst())
            block();
    }
}

void MainQueue::rearm()
{
    m_isRunning = false;
    m_timer.stop();
    const std::scoped_lock lock(m_mutex);
    if (!m_ready.empty())
        wakeUpLocked();
    if (m_delayed.empty() || m_isManual)
        return;
    const auto wait =
        std::chrono::ceil<std::chrono::milliseconds>(m_delayed.begin()->first - steady_clock::now());
    m_timer.start(static_cast<int>(std::clamp<std::chrono::milliseconds>(wait, 0ms, 24h).count()), this);
}

std::size_t MainQueue::readyBlocks()
{
    const std::scoped_lock lock(m_mutex);
    promoteDueLocked();
    return m_ready.size();
}

/// Empty when a block has cleared the queue.
std::function<void()> MainQueue::takeFirst()
{
    const std::scoped_lock lock(m_mutex);
    if (m_ready.empty())
        return {};
    std::function<void()> block = std::move(m_ready.front());
    m_ready.pop_front();
    return block;
}

MainQueue::TimePoint MainQueue::nowLocked() const
{
    return m_isManual ? m_manualNow : steady_clock::now();
}

void MainQueue::promoteDueLocked()
{
    const auto due = m_delayed.upper_bound(nowLocked());
    for (auto entry = m_delayed.begin(); entry != due; ++entry)
        m_ready.push_back(std::move(entry->second));
    m_delayed.erase(m_delayed.begin(), due);
}

void MainQueue::wakeUpLocked()
{
    if (!std::exchange(m_isWakeUpPosted, true))
        QCoreApplication::postEvent(this, new QEvent(WakeUp));
}
