#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace
{
/// A panel with one button that dismisses it.
class Panel : public ViewController
{
public:
    void loadView() override
    {
        auto container = std::make_unique<QWidget>();
        m_button = new QPushButton(container.get());
        connect(m_button, &QPushButton::clicked, this, [this] { dismissController(m_button); });
        setView(std::move(container));
    }
    void viewDidAppear() override { ++m_appearances; }

    QPushButton *button() const { return m_button; }
    int appearances() const { return m_appearances; }

private:
    QPushButton *m_button = nullptr;
    int m_appearances = 0;
};
} // namespace

class ModalPresentationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ui::Window>();
        m_presenter = ViewController::make<ViewController>();
        m_window->setContentViewController(m_presenter);
        m_window->show();
        m_panel = ViewController::make<Panel>();
    }
    void cleanup()
    {
        if (m_panel)
            m_panel->dismissController();
        m_panel.reset();
        m_presenter.reset();
        m_window.reset();
    }

    void panelAppearsInAModalWindowOfItsOwn()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        ui::Window *window = m_panel->window();
        QVERIFY(window);
        QVERIFY(window != m_window.get());
        QVERIFY(window->isVisible());
        QCOMPARE(window->windowModality(), Qt::ApplicationModal);
        QCOMPARE(QApplication::activeModalWidget(), window);
        QCOMPARE(window->windowHandle()->transientParent(), m_window->windowHandle());
        QCOMPARE(m_panel->presentingViewController(), m_presenter);
        QTRY_COMPARE(m_panel->appearances(), 1);
    }

    void windowHasTheSizeOfTheViewAndOnlyAnEnd()
    {
        m_panel->view()->resize(420, 260);
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const ui::Window *window = m_panel->window();
        QCOMPARE(window->contentSize(), QSize(420, 260));
        QVERIFY(window->isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(window->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!window->isStandardButtonHidden(ui::Window::StandardButton::Close));
    }

    void dismissalClosesTheWindowAndForgetsThePresenter()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const QPointer<ui::Window> window = m_panel->window();
        m_panel->dismissController();
        QVERIFY(!m_panel->presentingViewController());
        QVERIFY(!window || !window->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        QTRY_VERIFY(!window);
        QVERIFY(m_panel->isViewLoaded());
    }

    void buttonInsideDismissesAndLetsThePanelGo()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const std::weak_ptr<Panel> panel = m_panel;
        QPushButton *button = m_panel->button();
        m_panel.reset();
        QVERIFY(!panel.expired());
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_VERIFY(panel.expired());
    }

    void closingTheWindowIsADismissal()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const QPointer<ui::Window> window = m_panel->window();
        QVERIFY(window->close());
        QVERIFY(!m_panel->presentingViewController());
        QTRY_VERIFY(!window);
    }

    void presenterMayGoFirst()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        m_window.reset();
        m_presenter.reset();
        QVERIFY(!m_panel->presentingViewController());
        const QPointer<ui::Window> window = m_panel->window();
        QVERIFY(window && window->isVisible());
        m_panel->dismissController();
        QTRY_VERIFY(!window);
    }

    void windowDeletedOutrightEndsThePresentation()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        delete m_panel->window();
        QVERIFY(m_panel->isViewLoaded());
        QVERIFY(!m_panel->presentingViewController());
        m_panel->dismissController();
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        QVERIFY(m_panel->window()->isVisible());
    }

    void secondPresentationWhileOneIsUpShowsTheSameWindow()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const ui::Window *window = m_panel->window();
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        QCOMPARE(m_panel->window(), window);
    }

    void panelCanBePresentedAgain()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        m_panel->dismissController();
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        QCOMPARE(m_panel->presentingViewController(), m_presenter);
        QVERIFY(m_panel->window()->isVisible());
        QVERIFY(m_panel->view()->isVisible());
        QTRY_COMPARE(m_panel->appearances(), 2);
    }

    void dismissalWithoutAPresentationDoesNothing()
    {
        m_presenter->dismissController();
        QVERIFY(m_window->isVisible());
        QVERIFY(m_presenter->isViewLoaded());
    }

    void endOfTheProgramEndsThePresentation()
    {
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        const std::weak_ptr<Panel> panel = m_panel;
        m_panel.reset();
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        QApplication::exec();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(panel.expired());
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<ViewController> m_presenter;
    std::shared_ptr<Panel> m_panel;
};

PLOVENDIX_GUI_TEST(ModalPresentationTest)
#include "ModalPresentationTest.moc"
