#pragma once
#include <QObject>
#include <memory>
#include <utility>

/// How far the import of a folder is, or how it ended.
struct FolderImportState
{
    enum class Phase
    {
        Idle, // nothing was imported yet
        Counting,
        Reading,
        Stopping,
        Finished,
        Stopped,
        Failed
    };

    bool isRunning() const
    {
        return phase == Phase::Counting || phase == Phase::Reading || phase == Phase::Stopping;
    }

    Phase phase = Phase::Idle;
    QString folder = {};
    qint64 total = 0; // subtitle files and archives; while they are counted, those found so far
    qint64 files = 0; // of them looked at
    qint64 added = 0;
    qint64 known = 0;
    qint64 refused = 0;
    QString current = {};      // the file looked at last, as seen from the folder
    QString firstRefusal = {}; // a sentence; empty where nothing was refused
    QString failure = {};      // a sentence, after Failed
};

/// Adds a folder's subtitle files to the person's own catalogue in the background, one folder at a time. The
/// Services pane starts it and shows its state; it runs on when the pane is closed. Main thread only.
class FolderImporting : public QObject
{
    Q_OBJECT

public:
    virtual const FolderImportState &state() const = 0;
    /// Starts with that folder; does nothing while another import runs.
    virtual void start(const QString &folder) = 0;
    /// Asks the import to stop. It ends soon and keeps the entered files.
    virtual void stop() = 0;

    /// The importer that the process entry installed, or null.
    static std::shared_ptr<FolderImporting> shared() { return s_shared; }
    static void setShared(std::shared_ptr<FolderImporting> importing) { s_shared = std::move(importing); }

Q_SIGNALS:
    void changed();

private:
    static inline std::shared_ptr<FolderImporting> s_shared;
};
