#pragma once
#include <chrono>
#include <functional>
#include <memory>

/// The one queue of blocks on the main thread, first in, first out.
/// Any thread may queue. No block starts while another is on the stack, not even inside a modal alert's own
/// event loop: what is queued meanwhile waits until the running block has returned. `shared()` must first be
/// called on the main thread, once the application object exists.
class MainQueue final
{
public:
    static MainQueue &shared();
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;

    /// Runs `block` on a later turn of the main thread, never before this call has returned.
    void async(std::function<void()> block);
    /// Runs `block` once `delay` has passed.
    void asyncAfter(std::chrono::milliseconds delay, std::function<void()> block);

    /// Whether the calling thread is the main thread.
    static bool isMainThread();

    /// For tests: delays count only as `advance` says, until `useSystemClock` is called.
    void useManualClock();
    void useSystemClock();
    void advance(std::chrono::milliseconds duration);
    /// For tests: runs what is due now and everything that those blocks queue in turn. Main
    /// thread; does nothing inside a block.
    void runUntilIdle();
    /// For tests: forgets every block, due or delayed.
    void clear();

private:
    MainQueue();
    class Private;
    std::unique_ptr<Private> d;
};
