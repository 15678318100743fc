#pragma once
#include <chrono>
#include <functional>
#include <memory>

class QObject;

/// The queue of blocks for the main thread, first in, first out. Any thread may queue. Blocks do not nest,
/// not even in a modal alert's event loop: a block queued during another one waits until that one has
/// returned. `shared()` must first be called on the main thread, after the application object was created.
class MainQueue final
{
public:
    static MainQueue &shared();
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;

    /// Runs `block` on a later turn of the main thread, never before this call returns.
    void async(std::function<void()> block);
    /// The same, but drops `block` when `context` was destroyed before its turn. Main thread only.
    void async(QObject *context, std::function<void()> block);
    /// Runs `block` once `delay` has passed.
    void asyncAfter(std::chrono::milliseconds delay, std::function<void()> block);

    /// Whether the calling thread is the main thread.
    static bool isMainThread();

    /// For tests: delays follow `advance` until `useSystemClock` is called.
    void useManualClock();
    void useSystemClock();
    void advance(std::chrono::milliseconds duration);
    /// For tests: runs the blocks that are due and all blocks that they queue. Main thread; does nothing
    /// inside a block.
    void runUntilIdle();
    /// For tests: drops every block, due or delayed.
    void clear();

private:
    MainQueue();
    class Private;
    std::unique_ptr<Private> d;
};
