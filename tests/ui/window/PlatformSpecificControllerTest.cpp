#include <tests/support/TestMain.h>
#include <ui/window/PlatformSpecificController.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QMessageBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A controller that notes what it is told instead of showing it.
class NotingController : public ViewController
{
public:
    bool presentError(const base::Error &error) override
    {
        errors += error;
        calls += u"error"_s;
        return true; // ignored
    }
    void dismissController(QObject *sender = nullptr)
    {
        QCOMPARE(sender, nullptr);
        calls += u"dismiss"_s;
    }
    void presentViewControllerAsModalWindow(const std::shared_ptr<ViewController> &controller)
    {
        presented += controller;
        calls += u"present"_s;
    }

    QList<base::Error> errors;
    QList<std::shared_ptr<ViewController>> presented;
    QStringList calls;
};

using Controller = PlatformController<NotingController>;

/// Dismisses every alert that shows, and keeps its text.
class AlertDismisser final : public QObject
{
public:
    AlertDismisser() { qApp->installEventFilter(this); }
    QStringList texts;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *alert = qobject_cast<QMessageBox *>(watched);
        if (alert && event->type() == QEvent::Show) {
            texts += alert->text();
            QMetaObject::invokeMethod(
                alert, [alert] { alert->accept(); }, Qt::QueuedConnection);
        }
        return false;
    }
};
} // namespace

class PlatformSpecificControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void viewIsLoadedOnceItWasUsed()
    {
        const auto controller = ViewController::make<PlatformController<>>();
        const PlatformSpecificController &operations = *controller;
        QCOMPARE(operations.viewActuallyLoaded(), false);
        controller->view();
        QCOMPARE(operations.viewActuallyLoaded(), true);
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
        const auto controller = ViewController::make<Controller>();
        controller->presentErrorMessage(message, [&] { controller->calls += u"completion"_s; });
        QCOMPARE(controller->calls, QStringList({u"error"_s, u"completion"_s}));
        QCOMPARE(controller->errors.size(), 1);
        const base::Error &error = controller->errors.first();
        QCOMPARE(error.domain, QString());
        QCOMPARE(error.code, 123);
        QCOMPARE(error.localizedDescription, message);
    }

    void emptyMessageStillShowsTheAlert()
    {
        AlertDismisser alerts;
        const auto controller = ViewController::make<PlatformController<>>();
        ui::Window window;
        window.setContentViewController(controller);
        window.show();
        qsizetype shownBefore = -1;
        int completions = 0;
        controller->presentErrorMessage(QString(), [&] {
            shownBefore = alerts.texts.size();
            ++completions;
        });
        QCOMPARE(shownBefore, 1);
        QCOMPARE(completions, 1);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void dismissalIgnoresTheAnimation_data()
    {
        QTest::addColumn<bool>("animated");
        QTest::addColumn<bool>("completes");
        QTest::newRow("plain") << false << false;
        QTest::newRow("animated") << true << false;
        QTest::newRow("plain, with a completion") << false << true;
        QTest::newRow("animated, with a completion") << true << true;
    }

    void dismissalIgnoresTheAnimation()
    {
        QFETCH(bool, animated);
        QFETCH(bool, completes);
        const auto controller = ViewController::make<Controller>();
        const auto complete = [&] { controller->calls += u"completion"_s; };
        controller->dismissCurrentViewController(
            animated, completes ? PlatformSpecificController::Completion(complete) : nullptr);
        QCOMPARE(controller->calls,
                 completes ? QStringList({u"dismiss"_s, u"completion"_s}) : QStringList{u"dismiss"_s});
    }

    void presentationCompletesAtOnce_data() { dismissalIgnoresTheAnimation_data(); }

    void presentationCompletesAtOnce()
    {
        QFETCH(bool, animated);
        QFETCH(bool, completes);
        const auto controller = ViewController::make<Controller>();
        const auto panel = ViewController::make<ViewController>();
        const auto complete = [&] { controller->calls += u"completion"_s; };
        controller->presentViewControllerModally(
            panel, animated, completes ? PlatformSpecificController::Completion(complete) : nullptr);
        QCOMPARE(controller->presented.size(), 1);
        QCOMPARE(controller->presented.first(), panel);
        QCOMPARE(controller->calls,
                 completes ? QStringList({u"present"_s, u"completion"_s}) : QStringList{u"present"_s});
    }

    void completionComesWhileTheWindowIsUp()
    {
        const auto controller = ViewController::make<PlatformController<>>();
        const auto panel = ViewController::make<PlatformController<>>();
        ui::Window window;
        window.setContentViewController(controller);
        window.show();
        bool wasUp = false;
        controller->presentViewControllerModally(
            panel, true, [&] { wasUp = panel->window() && panel->window()->isVisible(); });
        QVERIFY(wasUp);
        QVERIFY(panel->window() != &window);
        bool dismissed = false;
        panel->dismissCurrentViewController(false, [&] { dismissed = !panel->presentingViewController(); });
        QVERIFY(dismissed);
    }
};

PLOVENDIX_GUI_TEST(PlatformSpecificControllerTest)
#include "PlatformSpecificControllerTest.moc"
