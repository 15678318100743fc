#pragma once
#include <model/FolderImporting.h>

class BusyIndicator;
class ProgressLine;
class QLabel;
class QPushButton;
class QWidget;

/// The part of the Services pane that adds folders to the catalogue: a button; while an import runs a line
/// that says how far it is, and another button that ends it; below them what there is to say. Shows an import
/// that was begun before it was made. Without anybody who imports its button is disabled. Main thread only.
class FolderImportSection final : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        QPushButton *addButton;
        BusyIndicator *busyIndicator;
        ProgressLine *progressLine;
        QPushButton *cancelButton;
        QLabel *statusLabel;
    };

    /// The parts are below `view`, which owns us.
    FolderImportSection(const Parts &parts, QWidget &view);

    void askAndStart();
    void cancel();

Q_SIGNALS:
    /// The catalogue may be another one than before.
    void catalogueChanged();

private:
    void show();
    void showControls(const FolderImportState &state);
    void showProgress(const FolderImportState &state);
    QString progressText(const FolderImportState &state) const;

    Parts m_parts;
    std::shared_ptr<FolderImporting> m_importing;
};
