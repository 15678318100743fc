#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/TitleBar.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{
QAction *actionNamed(const QMenu &menu, const QString &name)
{
    for (QAction *action : menu.actions()) {
        if (action->text() == name)
            return action;
    }
    return nullptr;
}
} // namespace

/// The menu of a window where the window manager has none of its own.
class WindowMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ui::Window>();
        m_window->show();
    }
    void cleanup() { m_window.reset(); }

    void windowMenuOffersWhatCanBeDone()
    {
        QMenu *menu = rightClick();
        QVERIFY(menu && menu->isVisible());
        QVERIFY(!actionNamed(*menu, u"Restore"_s)->isEnabled());
        QVERIFY(actionNamed(*menu, u"Move"_s)->isEnabled());
        QVERIFY(actionNamed(*menu, u"Minimize"_s)->isEnabled());
        QVERIFY(actionNamed(*menu, u"Maximize"_s)->isEnabled());
        QSignalSpy closed(m_window.get(), &ui::Window::closed);
        actionNamed(*menu, u"Close"_s)->trigger();
        QCOMPARE(closed.size(), 1);
    }

    void windowMenuOfAMaximisedWindow()
    {
        m_window->showMaximized();
        QMenu *menu = rightClick();
        QVERIFY(menu && menu->isVisible());
        QVERIFY(actionNamed(*menu, u"Restore"_s)->isEnabled());
        QVERIFY(!actionNamed(*menu, u"Move"_s)->isEnabled());
        QVERIFY(!actionNamed(*menu, u"Maximize"_s)->isEnabled());
        actionNamed(*menu, u"Restore"_s)->trigger();
        QVERIFY(!m_window->isMaximized());
    }

private:
    QMenu *rightClick()
    {
        auto *titleBar = m_window->findChild<TitleBar *>();
        QContextMenuEvent event(QContextMenuEvent::Mouse, {300, 15}, titleBar->mapToGlobal(QPoint(300, 15)));
        QApplication::sendEvent(titleBar, &event);
        return m_window->findChildren<QMenu *>().value(0);
    }

    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
};

PLOVENDIX_GUI_TEST(WindowMenuTest)
#include "WindowMenuTest.moc"
