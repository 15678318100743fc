#include "WindowAccessible.h"

#include "DrawnFrame.h"
#include "Window.h"

#include <QAccessibleWidget>

namespace
{
class WindowAccessible final : public QAccessibleWidget
{
public:
    explicit WindowAccessible(ui::Window *window) : QAccessibleWidget(window, QAccessible::Window) {}

    int childCount() const override { return static_cast<int>(children().size()); }
    QAccessibleInterface *child(int index) const override
    {
        QWidget *child = children().value(index);
        return child ? QAccessible::queryAccessibleInterface(child) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? static_cast<int>(children().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
    }

private:
    QList<QWidget *> children() const
    {
        auto shown = widget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        shown.removeIf(
            [](const QWidget *child) { return child->isWindow() || DrawnFrame::isDecoration(child); });
        return shown;
    }
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *window = qobject_cast<ui::Window *>(object);
    return window ? new WindowAccessible(window) : nullptr;
}
} // namespace

void installWindowAccessible()
{
    // Installing a function twice is harmless but slow.
    static const bool installed = (QAccessible::installFactory(makeInterface), true);
    Q_UNUSED(installed)
}
