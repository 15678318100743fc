#include <app/AppDelegate.h>
#include <app/AppScenes.h>
#include <app/MainWindowController.h>
#include <features/feedback/FeedbackReporting.h>
#include <features/updates/UpdateChecking.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/window/Window.h>

#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class NotingUpdater final : public UpdateChecking
{
public:
    int checks = 0;

    void checkForUpdates(QObject *) override { ++checks; }
};

class NotingReporter final : public FeedbackReporting
{
public:
    QStringList reports;

    void setDelegate(Delegate *delegate) override { m_delegate = delegate; }
    void reportFeedback() override
    {
        if (!m_delegate) {
            reports += u"nobody to ask"_s;
            return;
        }
        const auto parameters = m_delegate->customParametersForFeedbackReport();
        reports += parameters[u"application"_s] + u' ' + parameters[u"version"_s];
    }

private:
    Delegate *m_delegate = nullptr;
};
} // namespace

class MainMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerScenes(); }
    void init()
    {
        m_service = ScriptedSubtitleService::install();
        m_metadata = ScriptedMetadataService::install();
        m_workspace = FakeWorkspace::install();
        m_delegate = std::make_unique<AppDelegate>();
        m_delegate->applicationWillFinishLaunching();
        m_window = std::make_unique<MainWindowController>();
        m_window->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(m_window->window()));
    }
    void cleanup()
    {
        m_window.reset();
        m_delegate.reset();
        Workspace::setSharedWorkspace({});
        UpdateChecking::setSharedUpdater({});
        FeedbackReporting::setSharedReporter({});
    }

    void offersEverythingWithItsShortcut()
    {
        QStringList entries;
        UpdateChecking::setSharedUpdater(std::make_shared<NotingUpdater>());
        FeedbackReporting::setSharedReporter(std::make_shared<NotingReporter>());
        Q_EMIT menu()->aboutToShow();
        const auto actions = menu()->actions();
        for (const QAction *action : actions)
            entries += action->isSeparator() ? u"-"_s : action->text() + u'|' + action->shortcut().toString();
        QCOMPARE(entries, (QStringList{u"Open Video…|Ctrl+O"_s, u"Save As…|Ctrl+Shift+S"_s, u"-"_s,
                                       u"Preferences…|Ctrl+,"_s, u"Check for Updates…|"_s, u"-"_s,
                                       u"Visit the Quorvane Website|"_s, u"Send Feedback…|"_s, u"Donate…|"_s,
                                       u"-"_s, u"About Plovendix|"_s, u"Quit|Ctrl+Q"_s}));
    }

    void updatesAndFeedbackAreOfferedOnlyWhereTheyWork()
    {
        const auto isOffered = [this](const QString &name) {
            Q_EMIT menu()->aboutToShow();
            return m_window->window()->findChild<QAction *>(name)->isVisible();
        };
        QVERIFY(!isOffered(u"updatesAction"_s));
        QVERIFY(!isOffered(u"feedbackAction"_s));
        trigger(u"updatesAction"_s);
        const auto updater = std::make_shared<NotingUpdater>();
        UpdateChecking::setSharedUpdater(updater);
        QVERIFY(isOffered(u"updatesAction"_s));
        trigger(u"updatesAction"_s);
        QCOMPARE(updater->checks, 1);
        const auto reporter = std::make_shared<NotingReporter>();
        FeedbackReporting::setSharedReporter(reporter);
        QVERIFY(isOffered(u"feedbackAction"_s));
        trigger(u"feedbackAction"_s);
        QCOMPARE(reporter->reports, (QStringList{u"Plovendix 1.0"_s})); // the delegate was set first
    }

    void feedbackWithoutAReporterIsFatal()
    {
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(m_delegate->sendFeedback(nullptr), FatalFaultCaught);
    }

    void preferencesOpenOnceAndComeBack()
    {
        QTest::keyClick(m_window->window(), Qt::Key_Comma, Qt::ControlModifier);
        const QList<ui::Window *> windows = ui::Window::openWindows();
        QCOMPARE(windows.size(), 2);
        QCOMPARE(windows.first(), m_window->window());
        QCOMPARE(windows.last()->windowTitle(), u"General"_s);
        trigger(u"preferencesAction"_s);
        QCOMPARE(ui::Window::openWindows(), windows);
        windows.last()->close();
        QCOMPARE(ui::Window::openWindows().size(), 1);
        trigger(u"preferencesAction"_s);
        QCOMPARE(ui::Window::openWindows(), windows);
    }
    void actionsAreReachedByName()
    {
        for (int time = 1; time <= 2; ++time) {
            m_window->activateAction(u"preferences"_s);
            m_window->activateAction(u"about"_s);
            QCOMPARE(ui::Window::openWindows().size(), 3);
        }
        for (const QString &name : {u"nothing"_s, QString(), u"feedback"_s}) // there is no reporter
            m_window->activateAction(name);
        m_window->activateAction(u"quit"_s);
        QVERIFY(ui::Window::openWindows().isEmpty());
    }

    void pagesOpen_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QUrl>("page");
        QTest::newRow("website") << u"websiteAction"_s << QUrl(u"https://www.quorvane.example/"_s);
        QTest::newRow("donation") << u"donateAction"_s
                                  << QUrl(u"https://donate.quorvane.example/plovendix"_s);
    }
    void pagesOpen()
    {
        QFETCH(QString, action);
        QFETCH(QUrl, page);
        trigger(action);
        QCOMPARE(m_workspace->opened, QList<QUrl>{page});
    }

private:
    QMenu *menu() const { return m_window->window()->findChild<QMenu *>(u"menu"_s); }
    void trigger(const QString &action) const { m_window->window()->findChild<QAction *>(action)->trigger(); }

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;
    std::shared_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<MainWindowController> m_window;
};

PLOVENDIX_GUI_TEST(MainMenuTest)
#include "MainMenuTest.moc"
