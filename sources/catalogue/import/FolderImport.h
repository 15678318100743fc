#pragma once
#include <model/FolderImporting.h>
#include <QString>
#include <chrono>
#include <future>
#include <thread>

struct FolderImportTimes
{
    std::chrono::milliseconds interval{50};          // between two looks at the thread's progress
    std::chrono::milliseconds writerTimeout{30'000}; // the longest wait for another writer
    std::chrono::milliseconds stopTimeout{5000};
};

/// Adds folders to a catalogue on a thread, as `plovendix-catalogue add` does: an interrupted import
/// continues, and an unchanged folder changes nothing. Main thread only.
class FolderImport final : public FolderImporting
{
public:
    explicit FolderImport(const QString &catalogue, const FolderImportTimes &times = {});
    /// Stops a running import and waits for its end, at most for `stopTimeout`. A thread that is stuck, for
    /// example on a network disk, is detached.
    ~FolderImport() override;

    const FolderImportState &state() const override { return m_state; }
    void start(const QString &folder) override;
    void stop() override;

private:
    struct Run;
    void lookLater();
    void look();

    const QString m_catalogue;
    const FolderImportTimes m_times;
    FolderImportState m_state;
    std::shared_ptr<Run> m_run; // shared with the thread, which may outlive this object
    std::thread m_thread;
    std::future<void> m_end;
};
