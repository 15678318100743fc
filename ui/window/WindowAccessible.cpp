#include "WindowAccessible.h"
#include "EdgeGrip.h"
#include "FrameOverlay.h"

#include "Window.h"

namespace
{
QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *window = qobject_cast<ui::Window *>(object);
    return window ? new WindowAccessible(window) : nullptr;
}
} // namespace

void WindowAccessible::install()
{
    // Installing a function twice is harmless but slow.
    static const bool installed = (QAccessible::installFactory(makeInterface), true);
    Q_UNUSED(installed)
}

WindowAccessible::WindowAccessible(QWidget *window) : QAccessibleWidget(window, QAccessible::Window) {}

QList<QWidget *> WindowAccessible::children() const
{
    QList<QWidget *> shown;
    for (QObject *object : widget()->children()) {
        auto *candidate = qobject_cast<QWidget *>(object);
        if (!candidate || candidate->isWindow() || qobject_cast<FrameOverlay *>(candidate) ||
            qobject_cast<EdgeGrip *>(candidate))
            continue;
        shown += candidate;
    }
    return shown;
}

int WindowAccessible::childCount() const
{
    return static_cast<int>(children().size());
}

QAccessibleInterface *WindowAccessible::child(int index) const
{
    const QList<QWidget *> shown = children();
    return index >= 0 && index < shown.size() ? QAccessible::queryAccessibleInterface(shown[index]) : nullptr;
}

int WindowAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? static_cast<int>(children().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
}
