#pragma once
#include <functional>
#include <memory>
#include <thread>

/// One thread that runs jobs in the order they were posted; it starts with the first. Any thread may post.
/// Destroying it forgets the jobs that have not begun and waits for the one that runs, unless that job itself
/// is what destroys it.
class WorkerThread final
{
public:
    WorkerThread();
    ~WorkerThread();
    WorkerThread(const WorkerThread &) = delete;
    WorkerThread &operator=(const WorkerThread &) = delete;

    void post(std::function<void()> job);

private:
    struct Queue;
    std::shared_ptr<Queue> m_queue; // shared with the thread, which may outlive us by the end of its last job
    std::thread m_thread;
};
