#pragma once
#include <ui/window/PlatformSpecificController.h>
#include <QList>

class QButtonGroup;
namespace Ui
{
class PrefsTabViewController;
}

/// The content of the preferences window: a row of tabs and the chosen pane below it. A pane is loaded when
/// it is first chosen. The window takes the pane's title and its scene's size. Main thread only.
class PrefsTabViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    /// Panes in the order of their tabs, at least one.
    explicit PrefsTabViewController(const QList<std::shared_ptr<ViewController>> &panes);
    ~PrefsTabViewController() override;

    const QList<std::shared_ptr<ViewController>> &panes() const { return m_panes; }
    int shownPane() const { return m_shown; }
    void showPane(int index);
    /// Gives the window the size of the pane that is shown.
    void fitWindow();

    QString title() const override;
    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    /// Closes the window.
    Q_INVOKABLE void cancel(QObject *sender);

private:
    void addTab(int index);
    void adoptPane(int index);
    ViewController &shown() const { return *m_panes.at(m_shown); }

    QList<std::shared_ptr<ViewController>> m_panes;
    QList<QSize> m_sizes; // of the panes' scenes; invalid until the pane was loaded
    int m_shown = 0;
    QButtonGroup *m_tabs = nullptr;
    std::unique_ptr<Ui::PrefsTabViewController> m_scene;
};
