#include "ViewKeeper.h"

#include <QEvent>

ViewKeeper::ViewKeeper(std::unique_ptr<QWidget> view) : m_view(view.release())
{
    m_view->installEventFilter(this);
    watchParent();
}

ViewKeeper::~ViewKeeper()
{
    disconnect(m_parentGoes);
    const std::unique_ptr<QWidget> view(m_view.data());
}

bool ViewKeeper::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view && event->type() == QEvent::ParentChange)
        watchParent();
    return QObject::eventFilter(watched, event);
}

void ViewKeeper::watchParent()
{
    disconnect(m_parentGoes);
    // A widget emits destroyed before it deletes its children.
    if (QWidget *parent = m_view->parentWidget())
        m_parentGoes = connect(parent, &QObject::destroyed, this, &ViewKeeper::takeBack);
}

void ViewKeeper::takeBack()
{
    if (m_view)
        m_view->setParent(nullptr);
}
