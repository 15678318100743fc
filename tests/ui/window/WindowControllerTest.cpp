#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>
#include <ui/window/WindowController.h>

using namespace Qt::StringLiterals;

namespace
{
class RecordingWindowController : public WindowController
{
public:
    QStringList record;

    void loadWindow() override
    {
        record += u"loadWindow"_s;
        WindowController::loadWindow();
    }
    void windowDidLoad() override
    {
        record += contentViewController() ? u"windowDidLoad with content"_s : u"windowDidLoad"_s;
    }
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
        const ui::Window *window = controller.window();
        QVERIFY(controller.isWindowLoaded() && !window->isVisible());
        controller.showWindow();
        QVERIFY(window->isVisible());
        QCOMPARE(controller.window(), window);
        QCOMPARE(controller.record, QStringList({u"loadWindow"_s, u"windowDidLoad"_s}));
    }

    void contentGoesToTheWindow()
    {
        RecordingWindowController controller;
        const auto before = ViewController::make<ViewController>();
        controller.setContentViewController(before);
        QVERIFY(!controller.isWindowLoaded());
        QCOMPARE(controller.contentViewController(), before);
        controller.window();
        QCOMPARE(controller.record.last(), u"windowDidLoad with content"_s);
        QCOMPARE(before->window(), controller.window());
        const auto after = ViewController::make<ViewController>();
        controller.setContentViewController(after);
        QCOMPARE(controller.contentViewController(), after);
        QCOMPARE(after->window(), controller.window());
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

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(WindowControllerTest)
#include "WindowControllerTest.moc"
