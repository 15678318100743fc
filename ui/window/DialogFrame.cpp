#include "DialogFrame.h"

#include <ui/style/ChromeColors.h>
#include "EdgeGrip.h"
#include "FrameOverlay.h"
#include "Shadow.h"
#include "TitleBar.h"
#include "Window.h"
#include <ui/system/WindowSystem.h>

#include <QDialog>
#include <QEvent>
#include <QLayout>
#include <QMessageBox>
#include <QPainter>
#include <QWindow>

namespace
{
constexpr QMargins ContentMargins{20, 4, 20, 18};
} // namespace

void DialogFrame::putAround(QDialog &dialog)
{
    new DialogFrame(dialog);
}

DialogFrame::DialogFrame(QDialog &dialog)
    : QObject(&dialog),
      m_dialog(dialog),
      m_titleBar(new TitleBar(&dialog)),
      m_grip(new EdgeGrip(&dialog)),
      m_overlay(new FrameOverlay(&dialog))
{
    dialog.setWindowFlag(Qt::FramelessWindowHint);
    dialog.setAttribute(Qt::WA_TranslucentBackground);
    dialog.setSizeGripEnabled(false);
    m_titleBar->setTransparent(true);
    m_titleBar->setButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    m_titleBar->setButtonHidden(ui::Window::StandardButton::Zoom, true);
    connect(m_titleBar, &TitleBar::closeRequested, &dialog, &QWidget::close);
    connect(m_titleBar, &TitleBar::moveRequested, this, [this] {
        if (m_dialog.windowHandle())
            m_dialog.windowHandle()->startSystemMove();
    });
    const WindowSystem &system = WindowSystem::shared();
    connect(&system, &WindowSystem::situationChanged, this, &DialogFrame::refresh);
    if (dialog.layout())
        dialog.layout()->setContentsMargins(ContentMargins);
    setLook(WindowFrame::lookFor(system.situationOf(dialog)));
    dialog.installEventFilter(this);
}

bool DialogFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != &m_dialog)
        return false;
    switch (event->type()) {
    case QEvent::Paint:
        paint();
        break;
    case QEvent::Resize:
        layOut();
        break;
    case QEvent::Show:
    case QEvent::WindowStateChange:
        refresh();
        break;
    case QEvent::WindowActivate:
        correctPosition();
        break;
    case QEvent::ActivationChange:
    case QEvent::PaletteChange:
        m_dialog.update();
        break;
    default:
        break;
    }
    return false;
}

bool DialogFrame::hasFixedSize() const
{
    // A message box fixes its size only while it is shown, after its event filters have run.
    return qobject_cast<QMessageBox *>(&m_dialog) || m_dialog.minimumSize() == m_dialog.maximumSize();
}

void DialogFrame::refresh()
{
    const WindowFrame::Look look = WindowFrame::lookFor(WindowSystem::shared().situationOf(m_dialog));
    if (look != m_look) {
        const int grown = 2 * (look.margin - m_look.margin);
        const QSize size = m_dialog.size() + QSize(grown, grown);
        setLook(look);
        if (hasFixedSize())
            m_dialog.setFixedSize(size);
        else if (!m_dialog.isMaximized() && !m_dialog.isFullScreen())
            m_dialog.resize(size);
    }
    m_grip->setVisible(!hasFixedSize() && !m_dialog.isMaximized() && !m_dialog.isFullScreen());
    WindowSystem::shared().publishFrame(m_dialog, m_look);
}

void DialogFrame::correctPosition()
{
    // A window manager that reparents the window into an invisible frame may leave the toolkit with the
    // position in that frame. Clicks and assistive tools would then use wrong positions of controls.
    QWindow *handle = m_dialog.windowHandle();
    if (handle && handle->position() != m_dialog.pos())
        handle->setPosition(m_dialog.pos());
}

void DialogFrame::setLook(const WindowFrame::Look &look)
{
    m_look = look;
    m_dialog.setContentsMargins(look.margin, look.margin + ui::Window::TitleBarHeight, look.margin,
                                look.margin);
    m_overlay->setLook(look);
    m_grip->setMargin(look.margin);
    layOut();
    m_dialog.update();
}

void DialogFrame::layOut()
{
    const int margin = m_look.margin;
    m_titleBar->setGeometry(margin, margin, m_dialog.width() - 2 * margin, ui::Window::TitleBarHeight);
    for (QWidget *cover : {static_cast<QWidget *>(m_titleBar), static_cast<QWidget *>(m_grip),
                           static_cast<QWidget *>(m_overlay)})
        cover->raise();
    m_grip->setGeometry(m_dialog.rect());
    m_overlay->setGeometry(m_dialog.rect());
    WindowSystem::shared().publishFrame(m_dialog, m_look);
}

void DialogFrame::paint() const
{
    const int margin = m_look.margin;
    QPainter painter(&m_dialog);
    if (margin > 0)
        Shadow::paint(painter, m_dialog.rect(),
                      {m_dialog.devicePixelRatioF(), m_dialog.isActiveWindow(),
                       ChromeColors::isDark(m_dialog.palette())});
    painter.fillRect(m_dialog.rect().marginsRemoved({margin, margin, margin, margin}),
                     m_dialog.palette().color(QPalette::Window));
}
