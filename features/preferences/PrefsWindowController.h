#pragma once
#include <ui/window/WindowController.h>
#include <QStringList>
#include <memory>

class PrefsTabViewController;

/// The preferences window, with one tab a pane. It is made by whoever opens it first and kept for the next
/// time; `showWindow` brings it up. It is centred when it loads, and later stays where the person put it.
/// Main thread only.
class PrefsWindowController final : public WindowController
{
    Q_OBJECT

public:
    /// With every pane that has a scene, in the program's order.
    PrefsWindowController();
    /// With these scenes of the storyboard "Preferences", at least one.
    explicit PrefsWindowController(const QStringList &paneIdentifiers);
    ~PrefsWindowController() override;

    /// The panes that the storyboard has: General first, then services and updates, then any other.
    static QStringList availablePanes();
    /// Chooses the pane's tab; does nothing when there is no such pane.
    void showPane(const QString &identifier);

    void loadWindow() override;
    void windowDidLoad() override;

private:
    QStringList m_identifiers;
    std::shared_ptr<PrefsTabViewController> m_tabs;
};
