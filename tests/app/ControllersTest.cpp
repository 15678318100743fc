#include <app/AppScenes.h>
#include <features/preferences/PrefsWindowController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/PlatformSpecificController.h>
#include <ui/window/Window.h>

#include <QMessageBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString Tabs = u"the tabs of the preferences"_s; // made by their window, without a scene's name

/// Accepts every alert that shows, and keeps its text.
class AlertAccepter final : public QObject
{
public:
    AlertAccepter() { qApp->installEventFilter(this); }
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

/// All controllers of the program, through the operations that they share.
class ControllersTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;

    static std::shared_ptr<ViewController> make(const QString &storyboard, const QString &identifier)
    {
        if (identifier != Tabs)
            return Storyboard::named(storyboard).instantiateController(identifier);
        PrefsWindowController preferences;
        preferences.showWindow();
        const auto tabs = preferences.contentViewController();
        preferences.window()->setContentViewController({});
        return tabs;
    }

    static void addControllers()
    {
        QTest::addColumn<QString>("storyboard");
        QTest::addColumn<QString>("identifier");
        for (const QString &storyboard : {u"Main"_s, u"Preferences"_s}) {
            const QStringList identifiers = Storyboard::named(storyboard).controllerIdentifiers();
            for (const QString &identifier : identifiers)
                QTest::newRow(qUtf8Printable(identifier)) << storyboard << identifier;
        }
        QTest::newRow("PrefsTabViewController") << u"Preferences"_s << Tabs;
    }

private Q_SLOTS:
    void initTestCase()
    {
        registerScenes();
        m_service = ScriptedSubtitleService::install();
        m_metadata = ScriptedMetadataService::install();
    }

    void allHaveTheOperations_data() { addControllers(); }
    void allHaveTheOperations()
    {
        QFETCH(QString, storyboard);
        QFETCH(QString, identifier);
        const auto controller = make(storyboard, identifier);
        auto *operations = dynamic_cast<PlatformSpecificController *>(controller.get());
        QVERIFY(operations);
        QCOMPARE(operations->viewActuallyLoaded(), identifier == Tabs);
        controller->view();
        QVERIFY(operations->viewActuallyLoaded());

        AlertAccepter alerts;
        ui::Window window;
        window.setContentViewController(controller);
        window.show();
        QStringList textsBefore;
        operations->presentErrorMessage(u"It failed."_s, [&] { textsBefore = alerts.texts; });
        QCOMPARE(textsBefore, QStringList{u"It failed."_s});

        const auto panel = ViewController::make<ViewController>();
        int completions = 0;
        operations->presentViewControllerModally(panel, true, [&] { ++completions; });
        QCOMPARE(completions, 1);
        QCOMPARE(panel->presentingViewController(), controller);
        panel->dismissController();
        window.setContentViewController({});

        panel->presentViewControllerAsModalWindow(controller);
        QCOMPARE(controller->presentingViewController(), panel);
        operations->dismissCurrentViewController(true, [&] { ++completions; });
        QCOMPARE(completions, 2);
        QVERIFY(!controller->presentingViewController());
    }
};

PLOVENDIX_GUI_TEST(ControllersTest)
#include "ControllersTest.moc"
