#pragma once
#include <QList>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <optional>

class DrawnFrame;
class QAction;
class TitleBar;
class TitlebarAccessoryViewController;
class ViewController;

namespace ui
{
/// A top-level window that draws its own title bar, rounded corners and shadow. The window system moves,
/// resizes and maximises it and shows its menu. It has square corners and no margin when it is maximised,
/// full screen or no compositor runs. Main thread only.
///
/// With `fullSizeContentView` the content view fills the whole frame and the title bar lies over it;
/// otherwise it is below the title bar. The minimum content size is 480 × 360 points, or the size that was
/// set when that is smaller, or the content view's own minimum when that is larger.
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

    /// The shown windows of the program in the order of creation, the main window first.
    static QList<Window *> openWindows();
    /// Makes the action's shortcut work in every window, present and future, also modal ones, during the
    /// action's life.
    static void addActionToEveryWindow(QAction &action);

    std::shared_ptr<ViewController> contentViewController() const { return m_controller; }
    /// Adopts the controller's view and loads it. The window's title follows the controller's if that has
    /// one.
    void setContentViewController(const std::shared_ptr<ViewController> &controller);
    /// The size of the content, without shadow margin.
    void setContentSize(const QSize &size);
    QSize contentSize() const;

    void setTitlebarAppearsTransparent(bool transparent);
    bool titlebarAppearsTransparent() const;
    void setTitleVisibility(TitleVisibility visibility);
    TitleVisibility titleVisibility() const;
    void setFullSizeContentView(bool fullSize);
    bool isFullSizeContentView() const { return m_fullSizeContentView; }
    void setStandardButtonHidden(StandardButton button, bool hidden);
    bool isStandardButtonHidden(StandardButton button) const;
    /// Whether the person may resize and maximise it; initially true. When false it keeps the content's size.
    void setResizable(bool resizable);
    bool isResizable() const { return m_resizable; }
    /// Closes the window (Ctrl+W); for menus with that item.
    QAction *closeAction() const { return m_closeAction; }
    /// Keeps the accessory and shows its view at the end of the title bar given by its layout attribute.
    void
    addTitlebarAccessoryViewController(const std::shared_ptr<TitlebarAccessoryViewController> &accessory);

    /// Centres the window on its screen (X11; elsewhere the compositor places it) and limits its size to the
    /// screen.
    void center();
    /// Shows the window, un-minimises it and asks for the focus.
    void makeKeyAndOrderFront();
    void makeFirstResponder(QWidget *widget);
    /// The current shadow margin around the frame; 0 when the corners are square.
    int shadowMargin() const;
    void setVisible(bool visible) override;

Q_SIGNALS:
    /// The person closed the window.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void adoptContent(const std::shared_ptr<ViewController> &controller);
    void releaseContent();
    QRect contentRect() const;
    QSize windowSizeFor(const QSize &contentSize) const;
    void applySizeLimits();
    void layOut();
    void refreshFrame();
    void keepFrameInPlace(const QRect &geometry);
    /// Puts the title bar's controls after the content in the Tab order.
    void orderFocus();
    bool isZoomable() const;
    void toggleZoom();
    void showMenu(const QPoint &globalPosition);

    DrawnFrame *m_frame;
    TitleBar &m_titleBar;
    QAction *m_closeAction;
    std::shared_ptr<ViewController> m_controller;
    QPointer<QWidget> m_contentView;
    bool m_fullSizeContentView = false;
    bool m_resizable = true;
    bool m_closing = false; // the close event was accepted, but the window is not hidden yet
    QSize m_contentMinimum;
    QSize m_chosenContentSize;
    std::optional<QRect> m_geometryToReturnTo; // while maximised, full screen or tiled; invalid when unknown
    int m_normalMargin; // the margin that the geometry outside of maximised and tiled states includes
};
} // namespace ui
