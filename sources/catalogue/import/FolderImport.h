#pragma once
#include <model/FolderImporting.h>
#include <QString>
#include <chrono>
#include <thread>

/// Adds folders to a catalogue on a thread of its own, as `plovendix-catalogue add` does: a folder that was
/// begun goes on where it stopped, one that is in the catalogue changes nothing. Main thread only.
class FolderImport final : public FolderImporting
{
public:
    struct Options
    {
        std::chrono::milliseconds interval{50};          // between two states while it runs, at the least
        std::chrono::milliseconds writerTimeout{30'000}; // with another writer of the catalogue
        std::chrono::milliseconds stopTimeout{5000};
    };

    explicit FolderImport(const QString &catalogue);
    FolderImport(const QString &catalogue, const Options &options);
    /// Stops an import that runs and waits for its end, but no longer than is polite. One that is stuck, as
    /// on a network disk that does not answer, is left to itself.
    ~FolderImport() override;

    const FolderImportState &state() const override { return m_state; }
    void start(const QString &folder) override;
    void stop() override;

private:
    struct Run;
    void take(const FolderImportState &state);

    const QString m_catalogue;
    const Options m_options;
    FolderImportState m_state;
    std::shared_ptr<Run> m_run; // shared with the thread, which may outlive us
    std::thread m_thread;
};
