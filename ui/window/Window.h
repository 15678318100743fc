#pragma once
#include <QList>
#include <QPointer>
#include <QWidget>
#include <memory>

class QAction;
class TitleBar;
class TitlebarAccessoryViewController;
class ViewController;

/// A top-level window that draws its own title bar, rounded corners and shadow. Moving, resizing at the
/// edges, maximising on double click and the window menu go through the window system. Square corners and no
/// margin when it is maximised, full screen or no compositor runs. Main thread only.
///
/// The content view fills the whole frame when `fullSizeContentView` is on (the title bar then lies over it),
/// else it stands below the title bar. A person can make the content no smaller than 480 × 360 points, or
/// than it was set to when that is less, or than the content view's own minimum when that is more.
class Window : public QWidget
{
    Q_OBJECT

public:
    enum class StandardButton
    {
        Close,
        Miniaturize,
        Zoom
    };
    enum class TitleVisibility
    {
        Visible,
        Hidden
    };

    explicit Window(QWidget *parent = nullptr);
    ~Window() override;

    /// Every open (shown) window of the program in the order of creation, the main window first.
    static QList<Window *> openWindows();
    /// Makes the action's shortcut work in every window, those to come and modal ones included, as long as
    /// the action lives.
    static void addActionToEveryWindow(QAction &action);

    /// The title bar's height in points.
    static constexpr int TitleBarHeight = 38;

    std::shared_ptr<ViewController> contentViewController() const;
    /// Adopts the controller's view (loading it). The window keeps its title in step with the controller's
    /// when the controller has one.
    void setContentViewController(const std::shared_ptr<ViewController> &controller);
    /// The size of the content, without shadow margin.
    void setContentSize(const QSize &size);
    QSize contentSize() const;

    void setTitlebarAppearsTransparent(bool transparent);
    bool titlebarAppearsTransparent() const;
    void setTitleVisibility(TitleVisibility visibility);
    TitleVisibility titleVisibility() const;
    void setFullSizeContentView(bool fullSize);
    bool isFullSizeContentView() const;
    void setStandardButtonHidden(StandardButton button, bool hidden);
    bool isStandardButtonHidden(StandardButton button) const;
    /// Whether the person may resize and maximise it; on at first. Off, it keeps the content's size.
    void setResizable(bool resizable);
    bool isResizable() const;
    /// Whether it can be maximised: it is resizable and its zoom button is not hidden.
    bool isZoomable() const;
    /// Closes the window; Ctrl+W. For menus that offer the same.
    QAction *closeAction() const;
    /// Keeps the accessory and shows its view at the end of the title bar that its layout attribute names.
    void
    addTitlebarAccessoryViewController(const std::shared_ptr<TitlebarAccessoryViewController> &accessory);

    /// Puts the window in the middle of its screen (X11; elsewhere the compositor places it), no larger than
    /// that.
    void center();
    /// Shows the window, un-minimises it and asks for the focus.
    void makeKeyAndOrderFront();
    void makeFirstResponder(QWidget *widget);
    /// The shadow margin around the frame right now, 0 when square.
    int shadowMargin() const;
    void setVisible(bool visible) override;

Q_SIGNALS:
    /// The person asked to close it and it went.
    void closed();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
