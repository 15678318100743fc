#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/TitleBar.h>

using namespace Qt::StringLiterals;

/// A window and the controller whose view it shows.
class WindowContentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titleFollowsTheControllers()
    {
        ui::Window window;
        const auto controller = ViewController::make<ViewController>();
        controller->setTitle(u"General"_s);
        window.setContentViewController(controller);
        QCOMPARE(window.windowTitle(), u"General"_s);
        controller->setTitle(u"Updates"_s);
        QCOMPARE(window.windowTitle(), u"Updates"_s);

        window.setContentViewController(nullptr);
        controller->setTitle(u"Elsewhere"_s);
        QCOMPARE(window.windowTitle(), u"Updates"_s);
    }

    void aControllerWithoutTitleLeavesTheWindows()
    {
        ui::Window window;
        window.setWindowTitle(u"Plovendix"_s);
        window.setContentViewController(ViewController::make<ViewController>());
        QCOMPARE(window.windowTitle(), u"Plovendix"_s);
    }

    void contentStandsBelowTheTitleBar()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.setContentSize({560, 280});
        window.show();
        QCOMPARE(window.contentSize(), QSize(560, 280));
        QCOMPARE(controller->view()->geometry(), QRect(0, 38, 560, 280));
        QCOMPARE(window.size(), QSize(560, 318));
    }

    void fullSizeContentLiesUnderTheTitleBar()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.setFullSizeContentView(true);
        window.setContentSize({760, 640});
        window.show();
        QCOMPARE(controller->view()->geometry(), QRect(0, 0, 760, 640));
        const auto *titleBar = window.findChild<TitleBar *>();
        QCOMPARE(titleBar->geometry(), QRect(0, 0, 760, 38));
        QCOMPARE(window.childAt(300, 10), titleBar);
    }

    void controllerAppearsEachTimeTheWindowIsShown()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        QCOMPARE(controller->willAppear, 0);
        window.show();
        QCOMPARE(controller->willAppear, 1);
        QCOMPARE(controller->didAppear, 1);
        QVERIFY(!controller->wasVisibleOnWill);
        QVERIFY(controller->wasVisibleOnDid);
        window.show();
        QCOMPARE(controller->willAppear, 1);
        window.close();
        window.makeKeyAndOrderFront();
        QCOMPARE(controller->willAppear, 2);
        QCOMPARE(controller->didAppear, 2);
    }

    void unminimisingIsNoAppearance()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.show();
        window.showMinimized();
        window.makeKeyAndOrderFront();
        QVERIFY(!window.isMinimized());
        QCOMPARE(controller->willAppear, 1);
        QCOMPARE(controller->didAppear, 1);
    }

    void newContentInAShownWindowAppears()
    {
        ui::Window window;
        window.show();
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        QCOMPARE(controller->willAppear, 1);
        QCOMPARE(controller->didAppear, 1);
        QVERIFY(controller->view()->isVisible());
        QCOMPARE(controller->window(), &window);
    }

    void swappedContentKeepsItsPlaceUnderTheTitleBar()
    {
        const Composited composited(true);
        ui::Window window;
        window.setFullSizeContentView(true);
        window.setContentViewController(ViewController::make<CountingController>());
        window.show();
        const auto replacement = ViewController::make<CountingController>();
        window.setContentViewController(replacement);

        const QPoint insideTitleBar(28 + 300, 28 + 10);
        QCOMPARE(window.childAt(insideTitleBar), window.findChild<TitleBar *>());
        QCOMPARE(window.childAt(QPoint(28 + 300, 28 + 300)), replacement->view());
        // Nothing is painted after the overlay, or it would cover the rounded corners.
        QCOMPARE(window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).constLast(),
                 window.findChild<QWidget *>(u"frameOverlay"_s));
    }

    void releasedContentBelongsToItsControllerAgain()
    {
        const auto controller = ViewController::make<CountingController>();
        const QPointer<QWidget> view = controller->view();
        {
            ui::Window window;
            window.setContentViewController(controller);
            window.show();
            window.setContentViewController(ViewController::make<CountingController>());
            QVERIFY(view);
            QCOMPARE(view->parent(), nullptr);
            QVERIFY(!view->isVisible());
            window.setContentViewController(controller);
            QCOMPARE(controller->window(), &window);
        }
        QVERIFY(view);
        QCOMPARE(controller->window(), nullptr);
    }

    void firstResponderTakesTheFocus()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.show();
        auto *field = controller->view()->findChild<QLineEdit *>();
        window.makeFirstResponder(field);
        QCOMPARE(window.focusWidget(), field);
    }

    void noFirstResponderTakesItAway()
    {
        ui::Window window;
        const auto controller = ViewController::make<CountingController>();
        window.setContentViewController(controller);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *field = controller->view()->findChild<QLineEdit *>();
        window.makeFirstResponder(field);
        window.makeFirstResponder(nullptr);
        QVERIFY(!field->hasFocus());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(WindowContentTest)
#include "WindowContentTest.moc"
