#include "DrawnFrame.h"

#include "Shadow.h"
#include "TitleBar.h"
#include <ui/system/WindowSystem.h>

#include <QEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Radius = WindowFrame::CornerRadius;
} // namespace

/// The ring around the frame by which the window is resized. It lies over the content; a mask leaves all but
/// the ring free.
class DrawnFrame::EdgeGrip final : public QWidget
{
public:
    explicit EdgeGrip(QWidget *window) : QWidget(window)
    {
        setObjectName(u"edgeGrip"_s);
        setMouseTracking(true);
        setAttribute(Qt::WA_NoSystemBackground);
        setFocusPolicy(Qt::NoFocus);
    }

    void setMargin(int margin)
    {
        m_margin = margin;
        setMask(WindowFrame::grabZone(size(), m_margin));
    }

protected:
    void resizeEvent(QResizeEvent *) override { setMask(WindowFrame::grabZone(size(), m_margin)); }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const Qt::CursorShape shape = WindowFrame::cursorFor(edgesAt(*event));
        if (cursor().shape() != shape)
            setCursor(shape);
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        const Qt::Edges edges = edgesAt(*event);
        if (event->button() == Qt::LeftButton && edges && window()->windowHandle())
            window()->windowHandle()->startSystemResize(edges);
    }

private:
    Qt::Edges edgesAt(const QMouseEvent &event) const
    {
        return WindowFrame::edgesAt(event.position().toPoint(), size(), m_margin);
    }

    int m_margin = 0;
};

/// Lies over the content and draws the rounded corners, cut out of the content with the shadow behind them,
/// or the fine line around a frame without shadow. Takes no mouse events and covers only those pixels, so
/// that the content scrolls fast.
class DrawnFrame::Overlay final : public QWidget
{
public:
    Overlay(QWidget *window, const DrawnFrame &frame) : QWidget(window), m_frame(frame)
    {
        setObjectName(u"frameOverlay"_s);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        setFocusPolicy(Qt::NoFocus);
    }

    void updateMask()
    {
        const QRect frame = m_frame.rect();
        QRegion region;
        if (m_frame.m_look.rounded) {
            const QRect square(0, 0, Radius, Radius);
            for (const int x : {frame.left(), frame.right() - Radius + 1})
                for (const int y : {frame.top(), frame.bottom() - Radius + 1})
                    region += square.translated(x, y);
        }
        if (m_frame.m_look.hairline)
            region += QRegion(frame).subtracted(frame.adjusted(1, 1, -1, -1));
        setMask(region);
    }

protected:
    bool event(QEvent *event) override
    {
        // The shadow in the corners is lighter while another window is active.
        if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
            update();
        return QWidget::event(event);
    }

    void resizeEvent(QResizeEvent *) override { updateMask(); }

    void paintEvent(QPaintEvent *) override
    {
        const WindowFrame::Look &look = m_frame.m_look;
        const QRectF frame = m_frame.rect();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (look.rounded) {
            QPainterPath outside;
            outside.setFillRule(Qt::OddEvenFill);
            outside.addRect(frame);
            outside.addRoundedRect(frame, Radius, Radius);
            painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
            painter.fillPath(outside, Qt::black);
        }
        if (look.margin > 0) {
            painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
            paintShadow(painter, *this);
        }
        if (look.hairline) {
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
            QColor line = palette().color(QPalette::WindowText);
            line.setAlpha(60);
            painter.setPen(QPen(line, 1));
            const qreal radius = look.rounded ? Radius - 0.5 : 0;
            painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        }
    }

private:
    const DrawnFrame &m_frame;
};

DrawnFrame::DrawnFrame(QWidget &window)
    : QObject(&window),
      m_window(window),
      m_titleBar(new TitleBar(&window)),
      m_grip(new EdgeGrip(&window)),
      m_overlay(new Overlay(&window, *this)),
      m_situation(WindowSystem::shared().situationOf(window)),
      m_look(WindowFrame::lookFor(m_situation))
{
    window.setWindowFlag(Qt::FramelessWindowHint);
    // Set even without a compositor, because one may start later; without one everything is painted opaque.
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.installEventFilter(this);
    connect(&WindowSystem::shared(), &WindowSystem::situationChanged, this, &DrawnFrame::situationChanged);
    applyLook();
}

QRect DrawnFrame::rect() const
{
    return WindowFrame::frameIn(m_window.size(), m_look.margin);
}

bool DrawnFrame::hasFixedSize() const
{
    // A message box fixes its size only while it is shown, after its event filters have run.
    return qobject_cast<QMessageBox *>(&m_window) || m_window.minimumSize() == m_window.maximumSize();
}

void DrawnFrame::refresh()
{
    m_situation = WindowSystem::shared().situationOf(m_window);
    m_titleBar->setMaximized(m_situation.maximized);
    const WindowFrame::Look look = WindowFrame::lookFor(m_situation);
    if (look != std::exchange(m_look, look)) {
        Q_EMIT lookChanged();
        applyLook();
    }
    m_grip->setVisible(!hasFixedSize() && !m_situation.maximized && !m_situation.fullScreen);
    for (QWidget *part : std::initializer_list<QWidget *>{m_titleBar, m_grip, m_overlay})
        part->raise();
    publish();
}

bool DrawnFrame::isDecoration(const QWidget *widget)
{
    return dynamic_cast<const EdgeGrip *>(widget) || dynamic_cast<const Overlay *>(widget);
}

bool DrawnFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != &m_window)
        return false;
    switch (event->type()) {
    case QEvent::Paint:
        paint();
        break;
    case QEvent::Resize:
        layOut();
        break;
    case QEvent::WindowStateChange:
        Q_EMIT situationChanged();
        break;
    case QEvent::ActivationChange:
    case QEvent::PaletteChange:
        m_window.update();
        break;
    case QEvent::WinIdChange: // the native window is created late and may be recreated
        publish();
        // The margins are published in device pixels, which depend on the screen.
        if (m_window.windowHandle())
            connect(m_window.windowHandle(), &QWindow::screenChanged, this, &DrawnFrame::publish);
        break;
    default:
        break;
    }
    return false;
}

void DrawnFrame::applyLook()
{
    m_grip->setMargin(m_look.margin);
    m_overlay->updateMask();
    m_overlay->setVisible(m_look.rounded || m_look.hairline);
    layOut();
    m_window.update();
}

void DrawnFrame::layOut()
{
    const QRect frame = rect();
    m_titleBar->setGeometry(frame.x(), frame.y(), frame.width(), TitleBar::Height);
    m_grip->setGeometry(m_window.rect());
    m_overlay->setGeometry(m_window.rect());
    publish();
}

void DrawnFrame::paint() const
{
    QPainter painter(&m_window);
    painter.fillRect(rect(), m_window.palette().color(QPalette::Window));
    if (m_look.margin == 0)
        return;
    painter.setClipRegion(QRegion(m_window.rect()).subtracted(rect()));
    paintShadow(painter, m_window);
}

void DrawnFrame::publish() const
{
    WindowSystem::shared().publishFrame(m_window, m_look);
}
