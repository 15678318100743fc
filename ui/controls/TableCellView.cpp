#include "TableCellView.h"
#include <ui/views/ImageView.h>
#include "Label.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>

namespace
{
bool wasHidden(const QWidget &widget)
{
    // A widget that was never shown also counts as hidden; leave out only those hidden explicitly.
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

void layOutRecursively(QWidget &widget)
{
    widget.ensurePolished();
    if (QLayout *layout = widget.layout()) {
        layout->activate();
        layout->setGeometry(widget.contentsRect());
    }
    const auto children = widget.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children)
        layOutRecursively(*child);
}
} // namespace

void TableCellView::draw(QPainter &painter, const QRect &rect)
{
    if (m_laidOutSize != rect.size())
        layOut(rect.size());
    for (const Part &part : std::as_const(m_parts)) {
        if (wasHidden(*part.widget))
            continue;
        const QRect place = part.geometry.translated(rect.topLeft());
        if (part.label)
            part.label->draw(painter, place, part.label->palette());
        else
            part.imageView->draw(painter, place);
    }
}

bool TableCellView::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::LayoutRequest:
    case QEvent::ChildAdded:
    case QEvent::ChildRemoved:
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
        m_laidOutSize = {};
        m_parts.clear();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void TableCellView::layOut(const QSize &size)
{
    resize(size);
    layOutRecursively(*this);
    m_parts.clear();
    const auto widgets = findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        auto *label = qobject_cast<ui::Label *>(widget);
        auto *imageView = qobject_cast<ImageView *>(widget);
        if (label || imageView)
            m_parts.append({widget, label, imageView, QRect(widget->mapTo(this, QPoint()), widget->size())});
    }
    m_laidOutSize = size;
}
