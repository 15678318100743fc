#pragma once
#include "MainQueue.h"

#include <functional>
#include <memory>
#include <thread>
#include <utility>

/// One thread that runs jobs in the order of posting; the first job starts it. Any thread may post. The
/// destructor drops the jobs that have not begun and waits for the running one, unless that job itself
/// destroys this object.
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
    std::shared_ptr<Queue> m_queue; // shared with the thread, which may outlive this object
    std::thread m_thread;
};

/// Runs `work` on the worker and passes its result to `done` on the main thread.
template <class Work, class Done>
void inBackground(WorkerThread &worker, Work work, Done done)
{
    worker.post([work = std::move(work), done = std::move(done)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        MainQueue::shared().async([result, done = std::move(done)] { done(std::move(*result)); });
    });
}
