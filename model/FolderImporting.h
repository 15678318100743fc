#pragma once
#include <QObject>
#include <memory>

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

/// Adds a folder's subtitle files to the person's own catalogue in the background, one folder at a time, as
/// the Services pane asks for and shows it. Goes on whether or not anybody looks. Main thread only.
class FolderImporting : public QObject
{
    Q_OBJECT

public:
    FolderImporting() = default;
    ~FolderImporting() override;

    virtual const FolderImportState &state() const = 0;
    /// Begins with that folder; nothing happens while another import runs.
    virtual void start(const QString &folder) = 0;
    /// Asks the import to stop; it ends soon, and what was read until then is kept.
    virtual void stop() = 0;

    /// What the process entry installed, or nothing.
    static std::shared_ptr<FolderImporting> shared();
    static void setShared(std::shared_ptr<FolderImporting> importing);

Q_SIGNALS:
    void changed();
};
