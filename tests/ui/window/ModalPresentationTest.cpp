#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QPushButton>
#include <QTimer>
#include <QWindow>

namespace
{
/// A panel with one button that dismisses it.
class Panel : public ViewController
{
public:
    QPushButton *button = nullptr;
    int appearances = 0;

    void loadView() override
    {
        auto container = std::make_unique<QWidget>();
        button = new QPushButton(container.get());
        connect(button, &QPushButton::clicked, this, [this] { dismissController(button); });
        container->resize(420, 260);
        setView(std::move(container));
    }
    void viewDidAppear() override { ++appearances; }
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
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        m_modal = m_panel->window();
    }
    void cleanup()
    {
        if (m_panel)
            m_panel->dismissController();
        m_panel.reset();
        m_presenter.reset();
        m_window.reset();
    }

    void panelAppearsInAModalWindowOfItsSize()
    {
        QVERIFY(m_modal && m_modal != m_window.get() && m_modal->isVisible());
        QCOMPARE(m_modal->windowModality(), Qt::ApplicationModal);
        QCOMPARE(QApplication::activeModalWidget(), m_modal);
        QCOMPARE(m_modal->windowHandle()->transientParent(), m_window->windowHandle());
        QCOMPARE(m_panel->presentingViewController(), m_presenter);
        QCOMPARE(m_panel->appearances, 1);
        QCOMPARE(m_modal->contentSize(), QSize(420, 260));
        QVERIFY(m_modal->isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(m_modal->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!m_modal->isStandardButtonHidden(ui::Window::StandardButton::Close));
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        QCOMPARE(m_panel->window(), m_modal);
    }

    void presentationEnds_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"dismissed", "closed", "deleted", "after its presenter"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }
    void presentationEnds()
    {
        QFETCH(QString, how);
        if (how == QStringLiteral("after its presenter")) {
            m_window.reset();
            m_presenter.reset();
            QVERIFY(!m_panel->presentingViewController());
            QVERIFY(m_modal && m_modal->isVisible());
        }
        if (how == QStringLiteral("closed"))
            QVERIFY(m_modal->close());
        else if (how == QStringLiteral("deleted"))
            delete m_modal;
        else
            m_panel->dismissController();
        QVERIFY(!m_panel->presentingViewController());
        QVERIFY(!m_modal || !m_modal->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        QTRY_VERIFY(!m_modal);
        QVERIFY(m_panel->isViewLoaded());
    }

    void panelCanBePresentedAgain()
    {
        m_panel->dismissController();
        m_panel->dismissController(); // does nothing
        m_presenter->presentViewControllerAsModalWindow(m_panel);
        QCOMPARE(m_panel->presentingViewController(), m_presenter);
        QVERIFY(m_panel->window()->isVisible() && m_panel->view()->isVisible());
        QCOMPARE(m_panel->appearances, 2);
        m_presenter->dismissController(); // is not presented
        QVERIFY(m_window->isVisible());
    }

    void presentationHoldsThePanelUntilItEnds_data()
    {
        QTest::addColumn<bool>("byTheProgramsEnd");
        QTest::newRow("by its button") << false;
        QTest::newRow("by the program's end") << true;
    }
    void presentationHoldsThePanelUntilItEnds()
    {
        QFETCH(bool, byTheProgramsEnd);
        const std::weak_ptr<Panel> panel = m_panel;
        QPushButton *button = m_panel->button;
        m_panel.reset();
        QVERIFY(!panel.expired());
        if (byTheProgramsEnd) {
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
            QApplication::exec();
        } else {
            QTest::mouseClick(button, Qt::LeftButton);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(panel.expired());
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<ViewController> m_presenter;
    std::shared_ptr<Panel> m_panel;
    QPointer<ui::Window> m_modal;
};

PLOVENDIX_GUI_TEST(ModalPresentationTest)
#include "ModalPresentationTest.moc"
