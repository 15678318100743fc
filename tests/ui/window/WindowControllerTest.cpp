#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/TitlebarAccessoryViewController.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>
#include <ui/window/WindowController.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class RecordingWindowController : public WindowController
{
public:
    void loadWindow() override
    {
        m_record += u"loadWindow"_s;
        WindowController::loadWindow();
    }
    void windowDidLoad() override
    {
        m_record += contentViewController() ? u"windowDidLoad with content"_s : u"windowDidLoad"_s;
    }

    QStringList m_record;
};

class AppearingController : public ViewController
{
public:
    void viewWillAppear() override { m_record += window() ? u"will"_s : u"will, nowhere"_s; }
    void viewDidAppear() override { m_record += view()->isVisible() ? u"did"_s : u"did, hidden"_s; }

    QStringList m_record;
};
} // namespace

class WindowControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowIsLoadedOnFirstUseAndOnce()
    {
        RecordingWindowController controller;
        QVERIFY(!controller.isWindowLoaded());
        ui::Window *window = controller.window();
        QVERIFY(window);
        QVERIFY(controller.isWindowLoaded());
        QCOMPARE(controller.window(), window);
        QCOMPARE(controller.m_record, QStringList({u"loadWindow"_s, u"windowDidLoad"_s}));
        QVERIFY(!window->isVisible());
    }

    void contentSetBeforeIsInTheWindowWhenItHasLoaded()
    {
        RecordingWindowController controller;
        const auto content = ViewController::make<ViewController>();
        controller.setContentViewController(content);
        QVERIFY(!controller.isWindowLoaded());
        QCOMPARE(controller.contentViewController(), content);
        controller.window();
        QCOMPARE(controller.m_record.last(), u"windowDidLoad with content"_s);
        QCOMPARE(controller.contentViewController(), content);
        QCOMPARE(content->window(), controller.window());
    }

    void contentSetAfterGoesToTheWindow()
    {
        RecordingWindowController controller;
        controller.window();
        const auto content = ViewController::make<ViewController>();
        controller.setContentViewController(content);
        QCOMPARE(controller.contentViewController(), content);
        QCOMPARE(content->window(), controller.window());
    }

    void showingLoadsAndShows()
    {
        RecordingWindowController controller;
        controller.showWindow();
        QVERIFY(controller.isWindowLoaded());
        QVERIFY(controller.window()->isVisible());
    }

    void windowGoesWithItsController()
    {
        auto controller = std::make_unique<RecordingWindowController>();
        auto content = ViewController::make<ViewController>();
        const std::weak_ptr<ViewController> held = content;
        controller->setContentViewController(std::exchange(content, nullptr));
        controller->showWindow();
        const QPointer<ui::Window> window = controller->window();
        controller.reset();
        QVERIFY(!window);
        QVERIFY(held.expired());
    }

    void controllerThatLoadsNoWindowIsAFatalFault()
    {
        struct Windowless : WindowController
        {
            void loadWindow() override {}
        };
        const FatalFaultTrap trap;
        Windowless controller;
        QVERIFY_EXCEPTION_THROWN(controller.window(), FatalFaultCaught);
    }

    void contentHearsOfEachAppearance()
    {
        WindowController controller;
        const auto content = ViewController::make<AppearingController>();
        controller.setContentViewController(content);
        controller.window();
        QCOMPARE(content->m_record, QStringList());
        controller.showWindow();
        QTRY_COMPARE(content->m_record, QStringList({u"will"_s, u"did"_s}));
        controller.window()->hide();
        controller.showWindow();
        QTRY_COMPARE(content->m_record, QStringList({u"will"_s, u"did"_s, u"will"_s, u"did"_s}));
    }

    void accessoryStandsAtTheTrailingEndUnlessToldOtherwise()
    {
        TitlebarAccessoryViewController accessory;
        QCOMPARE(accessory.layoutAttribute(), LayoutAttribute::Trailing);
        QCOMPARE(static_cast<int>(accessory.layoutAttribute()), 6);
        accessory.setLayoutAttribute(LayoutAttribute::Leading);
        QCOMPARE(static_cast<int>(accessory.layoutAttribute()), 5);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(WindowControllerTest)
#include "WindowControllerTest.moc"
