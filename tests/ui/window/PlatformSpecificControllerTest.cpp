#include "AlertAnswerer.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/PlatformSpecificController.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
/// Notes the errors before it presents them.
class Controller : public PlatformController<>
{
public:
    QList<base::Error> errors;

    bool presentError(const base::Error &error) override
    {
        errors += error;
        return PlatformController::presentError(error) || true; // the answer is ignored
    }
};
} // namespace

class PlatformSpecificControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ui::Window>();
        m_controller = ViewController::make<Controller>();
        QVERIFY(!m_controller->viewActuallyLoaded());
        m_window->setContentViewController(m_controller);
        QVERIFY(m_controller->viewActuallyLoaded());
        m_window->show();
    }
    void cleanup()
    {
        m_window.reset();
        m_controller.reset();
    }

    void errorMessageIsPresentedBeforeTheCompletion_data()
    {
        QTest::addColumn<QString>("message");
        QTest::newRow("a message") << u"The file could not be read."_s;
        QTest::newRow("none") << QString();
    }
    void errorMessageIsPresentedBeforeTheCompletion()
    {
        QFETCH(QString, message);
        AlertAnswerer person([](QMessageBox &alert) { alert.close(); });
        QList<int> alertsBeforeCompletion;
        m_controller->presentErrorMessage(message, [&] {
            alertsBeforeCompletion += QApplication::activeModalWidget() ? -1 : person.alertsSeen();
        });
        QCOMPARE(alertsBeforeCompletion, QList<int>{1});
        QCOMPARE(m_controller->errors.size(), 1);
        const base::Error &error = m_controller->errors.first();
        QCOMPARE(error.domain, QString());
        QCOMPARE(error.code, 123);
        QCOMPARE(error.localizedDescription, message);
    }

    void presentationAndDismissalIgnoreTheAnimation_data()
    {
        QTest::addColumn<bool>("animated");
        QTest::addColumn<bool>("completes");
        QTest::newRow("plain") << false << false;
        QTest::newRow("animated") << true << false;
        QTest::newRow("plain, with a completion") << false << true;
        QTest::newRow("animated, with a completion") << true << true;
    }
    void presentationAndDismissalIgnoreTheAnimation()
    {
        QFETCH(bool, animated);
        QFETCH(bool, completes);
        using Completion = PlatformSpecificController::Completion;
        const auto panel = ViewController::make<PlatformController<>>();
        QStringList calls;
        const auto note = [&](const QString &text) -> Completion {
            if (!completes)
                return {};
            return [&, text] { calls += panel->window()->isVisible() ? text + u" while shown"_s : text; };
        };
        m_controller->presentViewControllerModally(panel, animated, note(u"presented"_s));
        QVERIFY(panel->window() && panel->window()->isVisible());
        QVERIFY(panel->window() != m_window.get());
        const QPointer<ui::Window> window = panel->window();
        panel->dismissCurrentViewController(animated, note(u"dismissed"_s));
        QVERIFY(!panel->presentingViewController());
        QVERIFY(!window->isVisible());
        QCOMPARE(calls,
                 completes ? QStringList({u"presented while shown"_s, u"dismissed"_s}) : QStringList());
        QTRY_VERIFY(!window);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<Controller> m_controller;
};

PLOVENDIX_GUI_TEST(PlatformSpecificControllerTest)
#include "PlatformSpecificControllerTest.moc"
