#include "ListEscape.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>

ListEscape::ListEscape(QComboBox &comboBox) : QObject(&comboBox)
{
    comboBox.view()->installEventFilter(this);
}

bool ListEscape::eventFilter(QObject *watched, QEvent *event)
{
    // Accepting the override makes Qt deliver a key press, which the list handles.
    if (event->type() != QEvent::ShortcutOverride || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape)
        return QObject::eventFilter(watched, event);
    event->accept();
    return true;
}
