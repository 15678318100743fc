#pragma once
#include <ui/window/WindowController.h>
#include <QStringList>
#include <memory>

class PrefsTabViewController;

/// The preferences window with one tab per pane. The menu creates it on first use and keeps it; `showWindow`
/// shows it. It is centred when it loads and later stays where the person moved it. Main thread only.
class PrefsWindowController final : public WindowController
{
    Q_OBJECT

public:
    /// Contains every pane that has a scene, in the program's order.
    PrefsWindowController();
    /// Contains these scenes of the storyboard "Preferences", at least one.
    explicit PrefsWindowController(const QStringList &paneIdentifiers);
    ~PrefsWindowController() override;

    /// The panes in the storyboard: General first, then services and updates, then others.
    static QStringList availablePanes();
    /// Selects the pane's tab; does nothing when there is none.
    void showPane(const QString &identifier);

    void loadWindow() override;
    void windowDidLoad() override;

private:
    QStringList m_identifiers;
    std::shared_ptr<PrefsTabViewController> m_tabs;
};

/// Registers the panes with the storyboard "Preferences".
void registerPreferencesScenes();
