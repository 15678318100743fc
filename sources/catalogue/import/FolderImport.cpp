#include "FolderImport.h"

#include "FolderImportJob.h"

#include <base/MainQueue.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

/// The state that the worker thread and the main thread share.
struct FolderImport::Run
{
    Run(FolderImport &import, const QString &folder)
        : owner(&import),
          interval(import.m_options.interval),
          job(import.m_catalogue, folder, import.m_options.writerTimeout)
    {
    }

    FolderImport *owner; // main thread only; null once the owner is destroyed
    const std::chrono::milliseconds interval;
    FolderImportJob job;
    std::mutex mutex; // guards the following members
    std::optional<FolderImportState> latest;
    bool isAwaited = false; // a block on the main queue will take it
    bool isLeft = false;    // the queue is unused after detaching
    bool isEnded = false;
    std::condition_variable ended;

    static void work(const std::shared_ptr<Run> &run)
    {
        const auto tell = [&run](const FolderImportState &state) { run->hand(run, state); };
        tell(run->job.run(tell));
        const std::scoped_lock lock(run->mutex);
        run->isEnded = true;
        run->ended.notify_all();
    }

    /// Locked: the queue is unused after detaching. Newer states replace unread ones.
    void hand(const std::shared_ptr<Run> &self, const FolderImportState &state)
    {
        const std::scoped_lock lock(mutex);
        if (isLeft)
            return;
        latest = state;
        if (!state.isRunning())
            MainQueue::shared().async([self] { self->give(); });
        else if (!std::exchange(isAwaited, true))
            MainQueue::shared().asyncAfter(interval, [self] { self->give(); });
    }

    void give()
    {
        std::optional<FolderImportState> state;
        {
            const std::scoped_lock lock(mutex);
            isAwaited = false;
            state = std::exchange(latest, std::nullopt);
        }
        if (owner && state)
            owner->take(*state);
    }

    /// Returns whether the thread has ended.
    bool leave(std::chrono::milliseconds longest)
    {
        owner = nullptr;
        job.stop();
        std::unique_lock lock(mutex);
        isLeft = true;
        return ended.wait_for(lock, longest, [this] { return isEnded; });
    }
};

FolderImport::FolderImport(const QString &catalogue) : FolderImport(catalogue, Options()) {}

FolderImport::FolderImport(const QString &catalogue, const Options &options)
    : m_catalogue(catalogue), m_options(options)
{
}

FolderImport::~FolderImport()
{
    if (!m_run)
        return;
    if (m_run->leave(m_options.stopTimeout))
        m_thread.join();
    else
        m_thread.detach();
}

void FolderImport::start(const QString &folder)
{
    Q_ASSERT(MainQueue::isMainThread());
    if (m_run)
        return;
    m_run = std::make_shared<Run>(*this, folder);
    m_state = {};
    m_state.phase = FolderImportState::Phase::Counting;
    m_state.folder = folder;
    m_thread = std::thread([run = m_run] { Run::work(run); });
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

/// Ignore progress posted before stop().
void FolderImport::take(const FolderImportState &state)
{
    const bool isStopping = m_state.phase == FolderImportState::Phase::Stopping;
    m_state = state;
    if (isStopping && state.isRunning())
        m_state.phase = FolderImportState::Phase::Stopping;
    if (!state.isRunning()) {
        m_thread.join(); // the thread has no work left
        m_run.reset();
    }
    Q_EMIT changed();
}
