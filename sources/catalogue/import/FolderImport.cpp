#include "FolderImport.h"

#include "FolderImportJob.h"

#include <base/MainQueue.h>

#include <QPointer>

#include <mutex>

/// What the worker thread and the main thread share.
struct FolderImport::Run
{
    FolderImportJob job;
    std::mutex mutex; // guards the state
    FolderImportState state;

    void setState(const FolderImportState &latest)
    {
        const std::scoped_lock lock(mutex);
        state = latest;
    }
    FolderImportState latestState()
    {
        const std::scoped_lock lock(mutex);
        return state;
    }
    void work()
    {
        setState(job.run([this](const FolderImportState &latest) { setState(latest); }));
    }
};

FolderImport::FolderImport(const QString &catalogue, const FolderImportTimes &times)
    : m_catalogue(catalogue), m_times(times)
{
}

FolderImport::~FolderImport()
{
    if (!m_run)
        return;
    m_run->job.stop();
    if (m_end.wait_for(m_times.stopTimeout) == std::future_status::ready)
        m_thread.join();
    else
        m_thread.detach();
}

void FolderImport::start(const QString &folder)
{
    Q_ASSERT(MainQueue::isMainThread());
    if (m_run)
        return;
    m_state = {};
    m_state.phase = FolderImportState::Phase::Counting;
    m_state.folder = folder;
    m_run.reset(new Run{{m_catalogue, folder, m_times.writerTimeout}, {}, m_state});
    std::packaged_task<void()> work([run = m_run] { run->work(); });
    m_end = work.get_future();
    m_thread = std::thread(std::move(work));
    lookLater();
    Q_EMIT changed();
}

void FolderImport::stop()
{
    Q_ASSERT(MainQueue::isMainThread());
    if (!m_run || m_state.phase == FolderImportState::Phase::Stopping)
        return;
    m_run->job.stop();
    m_state.phase = FolderImportState::Phase::Stopping;
    Q_EMIT changed();
}

void FolderImport::lookLater()
{
    MainQueue::shared().asyncAfter(m_times.interval, [self = QPointer(this)] {
        if (self)
            self->look();
    });
}

/// Shows the state that the thread has reached. A stopping import stays one until its end.
void FolderImport::look()
{
    // Checked before the state is read: the state of an ended thread is its last one.
    const bool hasEnded = m_end.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    const bool isStopping = m_state.phase == FolderImportState::Phase::Stopping;
    m_state = m_run->latestState();
    if (m_state.isRunning() && !hasEnded) {
        if (isStopping)
            m_state.phase = FolderImportState::Phase::Stopping;
        lookLater();
    } else {
        m_thread.join(); // the thread has no work left
        m_run.reset();
        m_end.get(); // passes on an exception that ended the thread early
    }
    Q_EMIT changed();
}
