#include "TitleBar.h"
#include <ui/style/ChromeColors.h>
#include "TitleBarButton.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace
{
constexpr int EndMargin = 12;
constexpr int ButtonSpacing = 8;
constexpr int AccessorySpacing = 16;
constexpr int TitleGap = 12;
constexpr qreal InactiveTitle = 0.5;
} // namespace

TitleBar::TitleBar(QWidget *window)
    : QWidget(window),
      m_minimize(new TitleBarButton(TitleBarButton::Glyph::Minimize, this)),
      m_zoom(new TitleBarButton(TitleBarButton::Glyph::Maximize, this)),
      m_close(new TitleBarButton(TitleBarButton::Glyph::Close, this))
{
    connect(m_minimize, &QAbstractButton::clicked, window, &QWidget::showMinimized);
    connect(m_zoom, &QAbstractButton::clicked, this, &TitleBar::zoomRequested);
    connect(m_close, &QAbstractButton::clicked, window, &QWidget::close);
    connect(window, &QWidget::windowTitleChanged, this, qOverload<>(&QWidget::update));
}

void TitleBar::setTitleVisibility(ui::Window::TitleVisibility visibility)
{
    m_titleVisibility = visibility;
    update();
}

void TitleBar::setTransparent(bool transparent)
{
    m_transparent = transparent;
    update();
}

TitleBarButton *TitleBar::button(ui::Window::StandardButton button) const
{
    switch (button) {
    case ui::Window::StandardButton::Miniaturize:
        return m_minimize;
    case ui::Window::StandardButton::Zoom:
        return m_zoom;
    case ui::Window::StandardButton::Close:
        break;
    }
    return m_close;
}

void TitleBar::setButtonHidden(ui::Window::StandardButton which, bool hidden)
{
    button(which)->setHidden(hidden);
    layOut();
}

void TitleBar::setMaximized(bool maximized)
{
    m_zoom->setGlyph(maximized ? TitleBarButton::Glyph::Restore : TitleBarButton::Glyph::Maximize);
}

void TitleBar::addAccessory(const std::shared_ptr<TitlebarAccessoryViewController> &accessory)
{
    m_accessories.push_back(accessory);
    QWidget *view = accessory->view();
    view->setParent(this);
    view->show();
    layOut();
}

QList<QWidget *> TitleBar::accessoryViews(LayoutAttribute end) const
{
    QList<QWidget *> views;
    for (const auto &accessory : m_accessories) {
        if (accessory->layoutAttribute() == end)
            views += accessory->view();
    }
    return views;
}

QList<QWidget *> TitleBar::focusOrder() const
{
    QList<QWidget *> order;
    const QList<QWidget *> views =
        accessoryViews(LayoutAttribute::Leading) + accessoryViews(LayoutAttribute::Trailing);
    for (QWidget *view : views) {
        for (QWidget *widget : QList<QWidget *>{view} + view->findChildren<QWidget *>()) {
            // The list of a combo box is a child in a separate window.
            if (widget->focusPolicy() != Qt::NoFocus && widget->window() == window())
                order += widget;
        }
    }
    return order + QList<QWidget *>{m_minimize, m_zoom, m_close};
}

QSize TitleBar::sizeOf(const QWidget *widget) const
{
    const QSize wanted = widget->sizeHint().expandedTo(widget->minimumSize());
    return wanted.boundedTo(widget->maximumSize()).boundedTo(size());
}

void TitleBar::place(QWidget *widget, int left)
{
    const QSize size = sizeOf(widget);
    widget->setGeometry(QRect(QPoint(left, (height() - size.height()) / 2), size));
}

void TitleBar::layOut()
{
    int right = width() - EndMargin;
    bool buttonShown = false;
    for (TitleBarButton *button : {m_close, m_zoom, m_minimize}) {
        if (button->isHidden())
            continue;
        right -= sizeOf(button).width();
        place(button, right);
        right -= ButtonSpacing;
        buttonShown = true;
    }
    if (buttonShown)
        right += ButtonSpacing - AccessorySpacing;
    for (QWidget *view : accessoryViews(LayoutAttribute::Trailing)) {
        right -= sizeOf(view).width();
        place(view, right);
        right -= ButtonSpacing;
    }
    m_trailingStart = right;

    int left = EndMargin;
    for (QWidget *view : accessoryViews(LayoutAttribute::Leading)) {
        place(view, left);
        left += view->width() + ButtonSpacing;
    }
    m_leadingEnd = left;
    update();
}

QRect TitleBar::titleRect() const
{
    const int reach =
        qMin(width() / 2 - m_leadingEnd, m_trailingStart - width() / 2) - TitleGap + ButtonSpacing;
    return QRect(width() / 2 - reach, 0, 2 * reach, height());
}

bool TitleBar::event(QEvent *event)
{
    // An accessory changed its size, for example for a longer language name.
    if (event->type() == QEvent::LayoutRequest)
        layOut();
    // The window's own update skips widgets above opaque content.
    else if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        update();
    return QWidget::event(event);
}

void TitleBar::resizeEvent(QResizeEvent *)
{
    layOut();
}

void TitleBar::paintEvent(QPaintEvent *)
{
    const ChromeColors colors = ChromeColors::of(palette());
    QPainter painter(this);
    if (!m_transparent)
        painter.fillRect(rect(), colors.window);
    const QRect place = titleRect();
    if (m_titleVisibility == ui::Window::TitleVisibility::Hidden || place.width() <= 0)
        return;
    QFont titleFont = font();
    titleFont.setWeight(QFont::DemiBold);
    painter.setFont(titleFont);
    painter.setPen(isActiveWindow() ? colors.text
                                    : ChromeColors::mixed(colors.header, colors.text, InactiveTitle));
    const QString title =
        painter.fontMetrics().elidedText(window()->windowTitle(), Qt::ElideMiddle, place.width());
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, title);
}

void TitleBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_pressedAt = event->position().toPoint();
}

void TitleBar::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressedAt || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint distance = event->position().toPoint() - *m_pressedAt;
    if (distance.manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressedAt.reset();
    startMove();
}

void TitleBar::startMove()
{
    if (window()->windowHandle())
        window()->windowHandle()->startSystemMove();
}

void TitleBar::mouseReleaseEvent(QMouseEvent *)
{
    m_pressedAt.reset();
}

void TitleBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_pressedAt.reset();
    if (event->button() == Qt::LeftButton)
        Q_EMIT zoomRequested();
}

void TitleBar::contextMenuEvent(QContextMenuEvent *event)
{
    Q_EMIT menuRequested(event->globalPos());
}
