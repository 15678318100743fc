#pragma once
#include "TitlebarAccessoryViewController.h"
#include "Window.h"
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

class TitleBarButton;

/// The strip at the top of a window's frame: title, the three buttons at the right end, accessories at both
/// ends. It moves, minimises and closes its window.
class TitleBar final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Height = 38; // points

    explicit TitleBar(QWidget *window);

    void setTitleVisibility(ui::Window::TitleVisibility visibility);
    ui::Window::TitleVisibility titleVisibility() const { return m_titleVisibility; }
    /// Whether the content shows behind the bar instead of the bar's background.
    void setTransparent(bool transparent);
    bool isTransparent() const { return m_transparent; }
    TitleBarButton *button(ui::Window::StandardButton button) const;
    void setButtonHidden(ui::Window::StandardButton which, bool hidden);
    void setMaximized(bool maximized);
    void addAccessory(const std::shared_ptr<TitlebarAccessoryViewController> &accessory);
    /// Every focusable widget of the bar, in reading order.
    QList<QWidget *> focusOrder() const;
    /// The area of the title: centred, and as wide as accessories and buttons allow.
    QRect titleRect() const;

    /// Lets the window system move the window with the pointer.
    void startMove();

Q_SIGNALS:
    /// The zoom button was clicked, or the bar was double-clicked.
    void zoomRequested();
    /// The bar was right-clicked.
    void menuRequested(const QPoint &globalPosition);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void layOut();
    QSize sizeOf(const QWidget *widget) const;
    void place(QWidget *widget, int left);
    QList<QWidget *> accessoryViews(LayoutAttribute end) const;

    ui::Window::TitleVisibility m_titleVisibility = ui::Window::TitleVisibility::Visible;
    bool m_transparent = false;
    TitleBarButton *m_minimize;
    TitleBarButton *m_zoom;
    TitleBarButton *m_close;
    std::vector<std::shared_ptr<TitlebarAccessoryViewController>> m_accessories;
    std::optional<QPoint> m_pressedAt; // until the pointer has moved the drag distance
    int m_leadingEnd = 0;
    int m_trailingStart = 0;
};
