#pragma once
#include <model/FolderImporting.h>

class BusyIndicator;
class ProgressLine;
class QLabel;
class QPushButton;
class QWidget;

/// The part of the Services pane that adds folders to the catalogue: a start button, a progress line and a
/// stop button during an import, and a text about its state. Also shows an import that was started before.
/// Without an importer its button is disabled. Main thread only.
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

    /// The parts are children of `view`, which owns this object.
    FolderImportSection(const Parts &parts, QWidget &view);

    void askAndStart();
    void cancel();

Q_SIGNALS:
    /// The catalogue may have changed.
    void catalogueChanged();

private:
    void show();
    void showControls(const FolderImportState &state);
    void showProgress(const FolderImportState &state);
    QString progressText(const FolderImportState &state) const;

    Parts m_parts;
    std::shared_ptr<FolderImporting> m_importing;
};
