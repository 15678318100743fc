#pragma once
#include <functional>
#include <memory>
#include <thread>

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
