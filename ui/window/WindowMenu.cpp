#include "WindowMenu.h"

#include <base/LocalizedString.h>
#include "Window.h"

#include <QMenu>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
} // namespace

QMenu *popUpWindowMenu(ui::Window &window, const QPoint &globalPosition)
{
    auto *menu = new QMenu(&window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool maximized = window.isMaximized();
    const bool zoomable = window.isZoomable();

    menu->addAction(String::localize(u"Restore"_s), &window, &QWidget::showNormal)->setEnabled(maximized);
    menu->addAction(String::localize(u"Move"_s), &window,
                    [&window] {
                        if (window.windowHandle())
                            window.windowHandle()->startSystemMove();
                    })
        ->setEnabled(!maximized);
    menu->addAction(String::localize(u"Minimize"_s), &window, &QWidget::showMinimized)
        ->setEnabled(!window.isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
    menu->addAction(String::localize(u"Maximize"_s), &window, &QWidget::showMaximized)
        ->setEnabled(zoomable && !maximized);
    menu->addSeparator();
    menu->addAction(window.closeAction());
    menu->popup(globalPosition);
    return menu;
}
