#include "DialogFrame.h"

#include "DrawnFrame.h"
#include "TitleBar.h"

#include <QDialog>
#include <QEvent>
#include <QLayout>
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
    : QObject(&dialog), m_dialog(dialog), m_frame(new DrawnFrame(dialog))
{
    dialog.setSizeGripEnabled(false);
    m_frame->titleBar().setTransparent(true);
    m_frame->titleBar().setButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    m_frame->titleBar().setButtonHidden(ui::Window::StandardButton::Zoom, true);
    connect(m_frame, &DrawnFrame::situationChanged, m_frame, &DrawnFrame::refresh);
    connect(m_frame, &DrawnFrame::lookChanged, this, &DialogFrame::keepContentSize);
    if (dialog.layout())
        dialog.layout()->setContentsMargins(ContentMargins);
    setContentsMargins();
    dialog.installEventFilter(this);
}

bool DialogFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_dialog && event->type() == QEvent::Show)
        m_frame->refresh();
    else if (watched == &m_dialog && event->type() == QEvent::WindowActivate)
        correctPosition();
    return false;
}

void DialogFrame::setContentsMargins()
{
    const int margin = m_frame->margin();
    m_dialog.setContentsMargins(margin, margin + TitleBar::Height, margin, margin);
}

void DialogFrame::keepContentSize()
{
    const int grown = 2 * (m_frame->margin() - m_dialog.contentsMargins().left());
    const QSize size = m_dialog.size() + QSize(grown, grown);
    setContentsMargins();
    if (m_frame->hasFixedSize())
        m_dialog.setFixedSize(size);
    else if (!m_dialog.isMaximized() && !m_dialog.isFullScreen())
        m_dialog.resize(size);
}

void DialogFrame::correctPosition()
{
    // A window manager that reparents the window into an invisible frame may leave the toolkit with the
    // position in that frame. Clicks and assistive tools would then use wrong positions of controls.
    QWindow *handle = m_dialog.windowHandle();
    if (handle && handle->position() != m_dialog.pos())
        handle->setPosition(m_dialog.pos());
}
