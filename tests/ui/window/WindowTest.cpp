#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/TitleBar.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QSignalSpy>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class WindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titleIsItsAccessibleName()
    {
        ui::Window window;
        window.setWindowTitle(u"Plovendix (6 subtitles found)"_s);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&window);
        QCOMPARE(accessible->text(QAccessible::Name), u"Plovendix (6 subtitles found)"_s);
        QCOMPARE(accessible->role(), QAccessible::Window);
    }

    void assistiveToolsSeeAWindowWithContentAndTitleBarOnly()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&window);
        QCOMPARE(accessible->childCount(), 2);
        for (int i = 0; i < accessible->childCount(); ++i) {
            QAccessibleInterface *child = accessible->child(i);
            QVERIFY(child->object() == controller->view() || qobject_cast<TitleBar *>(child->object()));
            QCOMPARE(accessible->indexOfChild(child), i);
        }
        QCOMPARE(accessible->child(2), nullptr);
    }

    void closeButtonClosesOnce()
    {
        ui::Window window;
        window.show();
        QSignalSpy closed(&window, &ui::Window::closed);
        QTest::mouseClick(buttonNamed(window, u"Close"_s), Qt::LeftButton);
        QCOMPARE(closed.size(), 1);
        QVERIFY(!window.isVisible());
    }

    void controlWCloses()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QSignalSpy closed(&window, &ui::Window::closed);
        QTest::keyClick(controller->view()->findChild<QLineEdit *>(), Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(closed.size(), 1);
        QVERIFY(window.closeAction()->shortcut() == QKeySequence(u"Ctrl+W"_s));
    }

    void mayBeDestroyedByWhoHearsOfItsClosing()
    {
        auto window = std::make_unique<ui::Window>();
        const QPointer<ui::Window> watched = window.get();
        connect(window.get(), &ui::Window::closed, this, [&window] { window.reset(); });
        window->show();
        watched->close();
        QVERIFY(watched.isNull());
    }

    void closingTheLastWindowIsNoticedByTheApplication()
    {
        constexpr int ended = 7;
        QApplication::setQuitOnLastWindowClosed(false);
        ui::Window first;
        ui::Window second;
        first.show();
        second.show();
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        connect(qApp, &QGuiApplication::lastWindowClosed, &second, [] { QCoreApplication::exit(ended); });
        QTimer::singleShot(0, &first, [&first, &second, &lastClosed] {
            first.close();
            QCOMPARE(lastClosed.size(), 0);
            second.close();
        });
        QTimer::singleShot(5s, &second, [] { QCoreApplication::exit(1); });
        // Qt tells of it only inside the application's own loop.
        QCOMPARE(QApplication::exec(), ended);
        QCOMPARE(lastClosed.size(), 1);
    }

    void openWindowsAreThoseShownInOrderOfCreation()
    {
        QCOMPARE(ui::Window::openWindows(), {});
        ui::Window first;
        ui::Window second;
        {
            ui::Window third;
            third.show();
            second.show();
            first.show();
            QCOMPARE(ui::Window::openWindows(), (QList<ui::Window *>{&first, &second, &third}));
        }
        QCOMPARE(ui::Window::openWindows(), (QList<ui::Window *>{&first, &second}));
        first.close();
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{&second});
    }

    void minimisedWindowIsStillOpen()
    {
        ui::Window window;
        window.show();
        QTest::mouseClick(buttonNamed(window, u"Minimize"_s), Qt::LeftButton);
        QVERIFY(window.isMinimized());
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{&window});
        window.makeKeyAndOrderFront();
        QVERIFY(!window.isMinimized());
    }

    void smallestContent_data()
    {
        QTest::addColumn<QSize>("content");
        QTest::addColumn<QSize>("smallest");
        QTest::newRow("large") << QSize(760, 640) << QSize(480, 360);
        QTest::newRow("low") << QSize(560, 280) << QSize(480, 280);
        QTest::newRow("narrow") << QSize(400, 500) << QSize(400, 360);
    }

    void smallestContent()
    {
        QFETCH(QSize, content);
        QFETCH(QSize, smallest);
        ui::Window window;
        window.setContentSize(content);
        window.resize(10, 10);
        QCOMPARE(window.contentSize(), smallest);
    }

    void viewsOwnMinimumCounts()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        controller->view()->setMinimumSize(600, 100);
        window.setContentViewController(controller);
        window.resize(10, 10);
        QCOMPARE(window.contentSize(), QSize(600, 360));
    }

    void fixedSizeWindowKeepsItsContentsSize()
    {
        ui::Window window;
        window.setContentSize({560, 280});
        window.setResizable(false);
        window.resize(900, 900);
        QCOMPARE(window.contentSize(), QSize(560, 280));
        window.setContentSize({560, 310});
        QCOMPARE(window.contentSize(), QSize(560, 310));
        window.setResizable(true);
        window.resize(900, 900);
        QCOMPARE(window.size(), QSize(900, 900));
    }

    void centersItsFrame()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize({500, 400});
        window.center();
        const QPoint off = window.geometry().center() - window.screen()->availableGeometry().center();
        QVERIFY2(off.manhattanLength() <= 2, qPrintable(u"%1 %2"_s.arg(off.x()).arg(off.y())));
    }

    void centeredWindowIsNoLargerThanItsScreen()
    {
        const Composited composited(true);
        ui::Window window;
        const QRect room = window.screen()->availableGeometry();
        window.setContentSize(room.size() + QSize(300, 200));
        window.center();
        QCOMPARE(window.geometry().marginsRemoved({28, 28, 28, 28}), room);

        window.setContentSize(room.size() + QSize(300, 200));
        window.setResizable(false);
        window.center();
        // It keeps its size, but its title bar can be reached.
        QCOMPARE(window.pos() + QPoint(28, 28), room.topLeft());
    }

    void modalWindowBlocksTheOther()
    {
        ui::Window window;
        window.show();
        ui::Window about(&window);
        about.setWindowModality(Qt::ApplicationModal);
        about.show();
        QCOMPARE(QApplication::activeModalWidget(), &about);
        QVERIFY(about.isWindow());
        QCOMPARE(about.windowHandle()->transientParent(), window.windowHandle());
        about.close();
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(WindowTest)
#include "WindowTest.moc"
