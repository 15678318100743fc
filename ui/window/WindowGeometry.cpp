#include "Window.h"

#include "DrawnFrame.h"
#include "TitleBar.h"

#include <QScreen>

namespace
{
constexpr QSize ContentMinimum{480, 360};
} // namespace

void ui::Window::setContentSize(const QSize &size)
{
    m_contentMinimum = size.boundedTo(ContentMinimum);
    m_chosenContentSize = size;
    applySizeLimits();
    resize(windowSizeFor(size));
}

QSize ui::Window::contentSize() const
{
    return contentRect().size();
}

int ui::Window::shadowMargin() const
{
    return m_frame->margin();
}

void ui::Window::setFullSizeContentView(bool fullSize)
{
    if (fullSize == m_fullSizeContentView)
        return;
    m_fullSizeContentView = fullSize;
    applySizeLimits();
    layOut();
}

void ui::Window::setResizable(bool resizable)
{
    m_resizable = resizable;
    applySizeLimits();
    refreshFrame();
}

void ui::Window::center()
{
    if (!screen())
        return;
    // The shadow may extend beyond the screen, but the frame may not, least of all its title bar.
    const int margin = m_frame->margin();
    const QRect room = screen()->availableGeometry().marginsAdded({margin, margin, margin, margin});
    resize(size().boundedTo(room.size()));
    QRect place({}, size());
    place.moveCenter(room.center());
    move(qMax(place.left(), room.left()), qMax(place.top(), room.top()));
}

void ui::Window::resizeEvent(QResizeEvent *)
{
    layOut();
}

QRect ui::Window::contentRect() const
{
    return m_frame->rect().adjusted(0, m_fullSizeContentView ? 0 : TitleBar::Height, 0, 0);
}

QSize ui::Window::windowSizeFor(const QSize &contentSize) const
{
    return contentSize + (size() - contentRect().size());
}

void ui::Window::applySizeLimits()
{
    if (!m_resizable) {
        setFixedSize(windowSizeFor(m_chosenContentSize));
        return;
    }
    const QSize viewMinimum = m_contentView ? m_contentView->minimumSize() : QSize();
    setMinimumSize(windowSizeFor(m_contentMinimum.expandedTo(viewMinimum)));
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

void ui::Window::layOut()
{
    if (m_contentView)
        m_contentView->setGeometry(contentRect());
}

void ui::Window::refreshFrame()
{
    const QRect before = geometry(); // the new limits may change it
    m_frame->refresh();
    layOut();
    const WindowFrame::Situation &now = m_frame->situation();
    if (now.maximized || now.fullScreen || now.tiled)
        m_geometryToReturnTo = now.tiled ? QRect() : normalGeometry();
    else
        keepFrameInPlace(before);
}

void ui::Window::keepFrameInPlace(const QRect &geometry)
{
    // After un-maximising, the normal geometry may not have arrived yet.
    const QRect normal = m_geometryToReturnTo.value_or(geometry);
    m_geometryToReturnTo.reset();
    const int grown = m_frame->margin() - m_normalMargin;
    m_normalMargin = m_frame->margin();
    if (grown != 0 && normal.isValid())
        setGeometry(normal.adjusted(-grown, -grown, grown, grown));
}
