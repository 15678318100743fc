#pragma once
#include <QBasicTimer>
#include <QObject>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <mutex>

/// The queue of blocks for the main thread, first in, first out. Any thread may queue. Blocks do not nest,
/// not even in a modal alert's event loop: a block queued during another one waits until that one has
/// returned. `shared()` must first be called on the main thread, after the application object was created.
class MainQueue final : public QObject
{
public:
    static MainQueue &shared();

    /// Runs `block` on a later turn of the main thread, never before this call returns.
    void async(std::function<void()> block);
    /// The same, but drops `block` when `context` was destroyed before its turn. Main thread only.
    void async(QObject *context, std::function<void()> block);
    /// Runs `block` once `delay` has passed.
    void asyncAfter(std::chrono::milliseconds delay, std::function<void()> block);

    /// Whether the calling thread is the main thread.
    static bool isMainThread();

    /// For tests: delays follow `advance` until `useSystemClock` is called.
    void useManualClock() { setManual(true); }
    void useSystemClock() { setManual(false); }
    void advance(std::chrono::milliseconds duration);
    /// For tests: runs the blocks that are due and all blocks that they queue. Main thread; does nothing
    /// inside a block.
    void runUntilIdle();
    /// For tests: drops every block, due or delayed.
    void clear();

protected:
    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    MainQueue();
    void setManual(bool manual);
    void runBatch();
    void rearm();
    std::size_t readyBlocks();
    std::function<void()> takeFirst();
    TimePoint nowLocked() const;
    void promoteDueLocked();
    void wakeUpLocked();

    std::mutex m_mutex; // guards the five below
    std::deque<std::function<void()>> m_ready;
    std::multimap<TimePoint, std::function<void()>> m_delayed; // by due time
    TimePoint m_manualNow;
    bool m_isManual = false;
    bool m_isWakeUpPosted = false;

    bool m_isRunning = false; // main thread only, like the timer
    QBasicTimer m_timer;
};
