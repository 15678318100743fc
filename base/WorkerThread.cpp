#include "WorkerThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>

struct WorkerThread::Queue
{
    std::mutex mutex; // guards the two below
    std::deque<std::function<void()>> jobs;
    bool ended = false;
    std::condition_variable changed;

    void run()
    {
        while (std::function<void()> job = next())
            job();
    }

    /// Waits for a job; an empty job means that the thread ends.
    std::function<void()> next()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return ended || !jobs.empty(); });
        if (ended)
            return {};
        std::function<void()> job = std::move(jobs.front());
        jobs.pop_front();
        return job;
    }
};

WorkerThread::WorkerThread() : m_queue(std::make_shared<Queue>()) {}

WorkerThread::~WorkerThread()
{
    // Destroyed after the lock is released: destroying a job may post another one.
    std::deque<std::function<void()>> forgotten;
    {
        const std::scoped_lock lock(m_queue->mutex);
        m_queue->ended = true;
        forgotten.swap(m_queue->jobs);
    }
    m_queue->changed.notify_one();
    forgotten.clear();
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else if (m_thread.joinable())
        m_thread.join();
}

void WorkerThread::post(std::function<void()> job)
{
    // Keep the queue alive: the job may run at once and destroy this object.
    const std::shared_ptr<Queue> queue = m_queue;
    {
        const std::scoped_lock lock(queue->mutex);
        if (queue->ended)
            return;
        queue->jobs.push_back(std::move(job));
        // Under the lock, which the job needs before it can read m_thread.
        if (!m_thread.joinable())
            m_thread = std::thread([queue] { queue->run(); });
    }
    queue->changed.notify_one();
}
