#include <app/AppDelegate.h>
#include <app/AppScenes.h>
#include <app/MainWindowController.h>
#include <base/Workspace.h>
#include <features/feedback/FeedbackReporting.h>
#include <features/search/MainViewController.h>
#include <features/updates/UpdateChecking.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/system/URLEventCentre.h>
#include <ui/window/Window.h>

#include <QFileDialog>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class NotingWorkspace final : public Workspace
{
public:
    QList<QUrl> opened;

    bool openURL(const QUrl &url) override
    {
        opened += url;
        return true;
    }
};

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
        m_workspace = std::make_shared<NotingWorkspace>();
        Workspace::setSharedWorkspace(m_workspace);
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

    void nothingDeadIsOffered()
    {
        Q_EMIT menu()->aboutToShow();
        for (const QString &name : {u"updatesAction"_s, u"feedbackAction"_s})
            QVERIFY(!m_window->window()->findChild<QAction *>(name)->isVisible());
        trigger(u"updatesAction"_s);
    }

    void checksForUpdates()
    {
        const auto updater = std::make_shared<NotingUpdater>();
        UpdateChecking::setSharedUpdater(updater);
        Q_EMIT menu()->aboutToShow();
        QVERIFY(m_window->window()->findChild<QAction *>(u"updatesAction"_s)->isVisible());
        trigger(u"updatesAction"_s);
        QCOMPARE(updater->checks, 1);
    }

    void feedbackIsReportedWithTheDelegateSetFirst()
    {
        const auto reporter = std::make_shared<NotingReporter>();
        FeedbackReporting::setSharedReporter(reporter);
        Q_EMIT menu()->aboutToShow();
        QVERIFY(m_window->window()->findChild<QAction *>(u"feedbackAction"_s)->isVisible());
        trigger(u"feedbackAction"_s);
        QCOMPARE(reporter->reports, (QStringList{u"Plovendix 1.0"_s}));
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

    void shortcutsWorkInEveryWindow()
    {
        trigger(u"preferencesAction"_s);
        ui::Window *preferences = ui::Window::openWindows().last();
        trigger(u"aboutAction"_s);
        QTRY_VERIFY(ui::Window::openWindows().last()->isActiveWindow());
        QTest::keyClick(ui::Window::openWindows().last()->windowHandle(), Qt::Key_Comma, Qt::ControlModifier);
        QTRY_VERIFY(preferences->isActiveWindow());
        QTest::keyClick(preferences->windowHandle(), Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(qobject_cast<QFileDialog *>(QApplication::activeModalWidget()));
        QApplication::activeModalWidget()->close();
    }

    void controlWClosesTheFrontWindowAlone()
    {
        trigger(u"preferencesAction"_s);
        ui::Window *preferences = ui::Window::openWindows().last();
        QTRY_VERIFY(preferences->isActiveWindow());
        QTest::keyClick(preferences->windowHandle(), Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{m_window->window()});
    }

    void controlQQuitsFromEveryWindow_data()
    {
        QTest::addColumn<QString>("action");
        QTest::newRow("main window") << QString();
        QTest::newRow("preferences") << u"preferencesAction"_s;
        QTest::newRow("about") << u"aboutAction"_s;
    }
    void controlQQuitsFromEveryWindow()
    {
        QFETCH(const QString, action);
        if (!action.isEmpty())
            trigger(action);
        pressControlQ();
    }

    void controlQQuitsFromAModalWindow()
    {
        const auto modal = ViewController::make<ViewController>();
        m_window->mainViewController()->presentViewControllerAsModalWindow(modal);
        QTRY_VERIFY(modal->window()->isActiveWindow());
        // What would open another window behind this one does not.
        QTest::keyClick(modal->window()->windowHandle(), Qt::Key_Comma, Qt::ControlModifier);
        QCOMPARE(ui::Window::openWindows().size(), 2);
        pressControlQ();
    }

    void openPreferencesNeverSwallowARequest()
    {
        trigger(u"preferencesAction"_s);
        URLEventCentre::shared().send({u"plovendix:?fileurl=file:///v/A.mkv"_s});
        QCOMPARE(m_service->hashed.size(), 1);
        QVERIFY(!m_delegate->externalRequest);
    }

    void actionsAreReachedByName()
    {
        m_window->activateAction(u"preferences"_s);
        QCOMPARE(ui::Window::openWindows().size(), 2);
        for (const QString &name : {u"nothing"_s, QString(), u"feedback"_s}) // there is no reporter
            m_window->activateAction(name);
        m_window->activateAction(u"quit"_s);
        QVERIFY(ui::Window::openWindows().isEmpty());
    }

    void aboutOpens()
    {
        trigger(u"aboutAction"_s);
        trigger(u"aboutAction"_s);
        QCOMPARE(ui::Window::openWindows().size(), 2);
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

    void quitClosesEveryWindow()
    {
        trigger(u"preferencesAction"_s);
        trigger(u"quitAction"_s);
        QVERIFY(ui::Window::openWindows().isEmpty());
    }

private:
    QMenu *menu() const { return m_window->window()->findChild<QMenu *>(u"menu"_s); }
    /// In the window in front, and sees all of them go.
    static void pressControlQ()
    {
        ui::Window *front = ui::Window::openWindows().last();
        QTRY_VERIFY(front->isActiveWindow());
        QTest::keyClick(front->windowHandle(), Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(ui::Window::openWindows().isEmpty());
    }
    void trigger(const QString &action) const { m_window->window()->findChild<QAction *>(action)->trigger(); }

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;
    std::shared_ptr<NotingWorkspace> m_workspace;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<MainWindowController> m_window;
};

PLOVENDIX_GUI_TEST(MainMenuTest)
#include "MainMenuTest.moc"
