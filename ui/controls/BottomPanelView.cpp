#include "BottomPanelView.h"
#include <ui/views/LayoutConstraint.h>

#include <QChildEvent>

BottomPanelView::BottomPanelView(QWidget *parent) : QWidget(parent), m_constraint(new LayoutConstraint(this))
{
    connect(m_constraint, &LayoutConstraint::presentedConstantChanged, this, &BottomPanelView::layOut);
}

void BottomPanelView::setPanelName(const QString &name)
{
    m_panelName = name;
    layOut();
}

void BottomPanelView::setPanelHeight(int points)
{
    m_panelHeight = points;
    layOut();
}

void BottomPanelView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void BottomPanelView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    layOut();
    raisePanel();
}

void BottomPanelView::childEvent(QChildEvent *event)
{
    QWidget::childEvent(event);
    // Handles children added after the first layout; those of the scene have their names by then.
    if (event->type() == QEvent::ChildPolished) {
        layOut();
        raisePanel();
    }
}

bool BottomPanelView::isPanel(const QWidget &child) const
{
    return !m_panelName.isEmpty() && child.objectName() == m_panelName;
}

void BottomPanelView::raisePanel()
{
    if (auto *panel = findChild<QWidget *>(m_panelName, Qt::FindDirectChildrenOnly); panel && isPanel(*panel))
        panel->raise();
}

void BottomPanelView::layOut()
{
    const auto widgets = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : widgets) {
        if (child->isWindow())
            continue;
        if (isPanel(*child))
            layOutPanel(*child);
        else if (child->property("keepsTop").toBool())
            child->resize(width() - 2 * child->x(), child->height());
        else
            child->setGeometry(rect());
    }
}

void BottomPanelView::layOutPanel(QWidget &panel)
{
    const int panelHeight = m_panelHeight > 0 ? m_panelHeight : panel.sizeHint().height();
    const int visible = panelHeight + qRound(m_constraint->presentedConstant());
    panel.setGeometry(0, height() - visible, width(), panelHeight);
    // A panel wholly below the edge must not take focus or be read out.
    const bool shown = visible > 0;
    if (panel.isHidden() == shown)
        panel.setVisible(shown);
}
