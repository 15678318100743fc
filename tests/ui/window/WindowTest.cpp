#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

class WindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ui::Window>();
        m_content = ViewController::make<ContentController>();
    }
    void cleanup()
    {
        m_window.reset();
        m_content.reset();
    }

    void assistiveToolsSeeAWindowWithContentAndTitleBarOnly()
    {
        m_window->setWindowTitle(u"Plovendix (6 subtitles found)"_s);
        m_window->setContentViewController(m_content);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(m_window.get());
        QCOMPARE(accessible->text(QAccessible::Name), u"Plovendix (6 subtitles found)"_s);
        QCOMPARE(accessible->role(), QAccessible::Window);
        QCOMPARE(accessible->childCount(), 2);
        for (int i = 0; i < accessible->childCount(); ++i) {
            QAccessibleInterface *child = accessible->child(i);
            QVERIFY(child->object() == m_content->view() || qobject_cast<TitleBar *>(child->object()));
            QCOMPARE(accessible->indexOfChild(child), i);
        }
        QCOMPARE(accessible->child(2), nullptr);
    }

    void controlWCloses()
    {
        m_window->setContentViewController(m_content);
        activate(*m_window);
        QSignalSpy closed(m_window.get(), &ui::Window::closed);
        QTest::keyClick(m_content->field, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(closed.size(), 1);
        QVERIFY(!m_window->isVisible());
    }

    void receiverOfClosedMayDestroyTheWindow()
    {
        const QPointer<ui::Window> watched = m_window.get();
        connect(m_window.get(), &ui::Window::closed, this, [this] { m_window.reset(); });
        m_window->show();
        QTest::mouseClick(buttonNamed(*m_window, u"Close"_s), Qt::LeftButton);
        QVERIFY(watched.isNull());
    }

    void applicationNoticesTheLastWindowClosing()
    {
        constexpr int ended = 7;
        QApplication::setQuitOnLastWindowClosed(false);
        ui::Window second;
        m_window->show();
        second.show();
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        connect(qApp, &QGuiApplication::lastWindowClosed, &second, [] { QCoreApplication::exit(ended); });
        QTimer::singleShot(0, &second, [this, &second, &lastClosed] {
            m_window->close();
            QCOMPARE(lastClosed.size(), 0);
            second.close();
        });
        // Qt emits the signal only inside the application's loop.
        QCOMPARE(QApplication::exec(), ended);
        QCOMPARE(lastClosed.size(), 1);
    }

    void openWindowsAreThoseShownInOrderOfCreation()
    {
        QCOMPARE(ui::Window::openWindows(), {});
        ui::Window second;
        {
            ui::Window third;
            third.show();
            second.show();
            m_window->show();
            QCOMPARE(ui::Window::openWindows(), (QList<ui::Window *>{m_window.get(), &second, &third}));
        }
        m_window->close();
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{&second});
        QTest::mouseClick(buttonNamed(second, u"Minimize"_s), Qt::LeftButton);
        QVERIFY(second.isMinimized());
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{&second});
    }

    void smallestContent_data()
    {
        QTest::addColumn<QSize>("content");
        QTest::addColumn<QSize>("viewMinimum");
        QTest::addColumn<QSize>("smallest");
        QTest::newRow("large") << QSize(760, 640) << QSize() << QSize(480, 360);
        QTest::newRow("low") << QSize(560, 280) << QSize() << QSize(480, 280);
        QTest::newRow("narrow") << QSize(400, 500) << QSize() << QSize(400, 360);
        QTest::newRow("minimum of the view") << QSize(760, 640) << QSize(600, 100) << QSize(600, 360);
    }
    void smallestContent()
    {
        QFETCH(QSize, content);
        QFETCH(QSize, viewMinimum);
        QFETCH(QSize, smallest);
        m_content->view()->setMinimumSize(viewMinimum);
        m_window->setContentSize(content);
        m_window->setContentViewController(m_content);
        m_window->resize(10, 10);
        QCOMPARE(m_window->contentSize(), smallest);
    }

    void fixedSizeWindowKeepsItsContentsSize()
    {
        m_window->setContentSize({560, 280});
        m_window->setResizable(false);
        m_window->resize(900, 900);
        QCOMPARE(m_window->contentSize(), QSize(560, 280));
        m_window->setContentSize({560, 310});
        QCOMPARE(m_window->contentSize(), QSize(560, 310));
        m_window->setResizable(true);
        m_window->resize(900, 900);
        QCOMPARE(m_window->size(), QSize(900, 900));
    }

    void centeredWindowIsNoLargerThanItsScreen()
    {
        const Composited composited(true);
        const QRect room = m_window->screen()->availableGeometry();
        m_window->setContentSize({500, 400});
        m_window->center();
        QVERIFY((m_window->geometry().center() - room.center()).manhattanLength() <= 2);

        m_window->setContentSize(room.size() + QSize(300, 200));
        m_window->center();
        QCOMPARE(m_window->geometry().marginsRemoved({28, 28, 28, 28}), room);

        m_window->setContentSize(room.size() + QSize(300, 200));
        m_window->setResizable(false);
        m_window->center();
        // It keeps its size, but its title bar can be reached.
        QCOMPARE(m_window->pos() + QPoint(28, 28), room.topLeft());
    }

    void titleFollowsTheControllers()
    {
        m_window->setWindowTitle(u"Plovendix"_s);
        m_window->setContentViewController(m_content);
        QCOMPARE(m_window->windowTitle(), u"Plovendix"_s); // the controller has none
        m_content->setTitle(u"General"_s);
        QCOMPARE(m_window->windowTitle(), u"General"_s);
        m_window->setContentViewController(nullptr);
        m_content->setTitle(u"Elsewhere"_s);
        QCOMPARE(m_window->windowTitle(), u"General"_s);
        m_window->setContentViewController(m_content);
        QCOMPARE(m_window->windowTitle(), u"Elsewhere"_s);
    }

    void contentStandsBelowTheTitleBarOrUnderIt()
    {
        m_window->setContentViewController(m_content);
        m_window->setContentSize({560, 400});
        m_window->show();
        QCOMPARE(m_content->view()->geometry(), QRect(0, 38, 560, 400));
        m_window->setFullSizeContentView(true);
        QCOMPARE(m_content->view()->geometry(), QRect(0, 0, 560, 438));
        QCOMPARE(titleBar()->geometry(), QRect(0, 0, 560, 38));
        QCOMPARE(m_window->childAt(300, 10), titleBar());
    }

    void controllerAppearsEachTimeTheWindowIsShown()
    {
        m_window->setContentViewController(m_content);
        QCOMPARE(m_content->appearances, QStringList());
        m_window->show();
        const QStringList once{u"will"_s, u"did"_s};
        QCOMPARE(m_content->appearances, once);
        m_window->show();
        m_window->showMinimized();
        m_window->makeKeyAndOrderFront();
        QVERIFY(!m_window->isMinimized());
        QCOMPARE(m_content->appearances, once);
        m_window->close();
        m_window->makeKeyAndOrderFront();
        QCOMPARE(m_content->appearances, once + once);
    }

    void contentOfAShownWindowIsSwapped()
    {
        const Composited composited(true);
        m_window->setFullSizeContentView(true);
        const auto first = ViewController::make<ContentController>();
        m_window->setContentViewController(first);
        m_window->show();
        m_window->setContentViewController(m_content);
        QVERIFY(!first->view()->parent() && !first->view()->isVisible());
        QVERIFY(m_content->view()->isVisible());
        QCOMPARE(m_content->appearances, QStringList({u"will, shown"_s, u"did"_s}));
        QCOMPARE(m_window->childAt(28 + 300, 28 + 10), titleBar());
        QCOMPARE(m_window->childAt(28 + 300, 28 + 300), m_content->view());
        // Nothing is painted after the overlay, or it would cover the rounded corners.
        QCOMPARE(m_window->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)
                     .constLast()
                     ->objectName(),
                 u"frameOverlay"_s);
    }

    void firstResponderTakesTheFocusAndNoneGivesItBack()
    {
        m_window->setContentViewController(m_content);
        activate(*m_window);
        m_window->makeFirstResponder(m_content->field);
        QVERIFY(m_content->field->hasFocus());
        m_window->makeFirstResponder(nullptr);
        QVERIFY(!m_content->field->hasFocus());
    }

    void windowMenuOffersWhatCanBeDone_data()
    {
        QTest::addColumn<Qt::WindowState>("state");
        QTest::addColumn<bool>("resizable");
        QTest::addColumn<QStringList>("enabled");
        QTest::newRow("of fixed size")
            << Qt::WindowNoState << false << QStringList{u"Move"_s, u"Minimize"_s, u"Close"_s};
        QTest::newRow("normal") << Qt::WindowNoState << true
                                << QStringList{u"Move"_s, u"Minimize"_s, u"Maximize"_s, u"Close"_s};
        QTest::newRow("maximised") << Qt::WindowMaximized << true
                                   << QStringList{u"Restore"_s, u"Minimize"_s, u"Close"_s};
    }
    void windowMenuOffersWhatCanBeDone()
    {
        QFETCH(Qt::WindowState, state);
        QFETCH(bool, resizable);
        QFETCH(QStringList, enabled);
        m_window->setResizable(resizable);
        m_window->setWindowState(state);
        m_window->show();
        rightClick(*titleBar());
        const QPointer<QMenu> menu = m_window->findChild<QMenu *>();
        QVERIFY(menu && menu->isVisible());
        QStringList offered;
        for (const QAction *action : menu->actions()) {
            if (action->isEnabled() && !action->isSeparator())
                offered += action->text();
        }
        QCOMPARE(offered, enabled);
        QSignalSpy closed(m_window.get(), &ui::Window::closed);
        menu->actions().constLast()->trigger();
        QCOMPARE(closed.size(), 1);
        menu->close();
        QTRY_VERIFY(!menu);
    }

private:
    TitleBar *titleBar() const { return m_window->findChild<TitleBar *>(); }

    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<ContentController> m_content;
};

PLOVENDIX_GUI_TEST(WindowTest)
#include "WindowTest.moc"
