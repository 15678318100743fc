#include <app/AppScenes.h>
#include <app/MainWindowController.h>
#include <base/UserDefaults.h>
#include <features/donation/DonateViewController.h>
#include <features/feedback/FeedbackViewController.h>
#include <features/search/MainViewController.h>
#include <features/updates/UpdateViewController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QPlainTextEdit>
#include <QTest>

using namespace Qt::StringLiterals;

/// The menu's shortcuts in the windows that come up by themselves or by a menu entry: for updates, for
/// feedback and for a donation.
class WindowShortcutsTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;
    std::unique_ptr<MainWindowController> m_main;
    std::unique_ptr<ui::Window> m_updates;
    std::unique_ptr<ui::Window> m_feedback;

    ui::Window *opened(const QString &name)
    {
        auto *panel = static_cast<UpdateViewController *>(m_updates->contentViewController().get());
        if (name.endsWith(u"Action"_s))
            m_main->window()->findChild<QAction *>(name)->trigger();
        else if (name == u"feedback"_s)
            static_cast<FeedbackViewController *>(m_feedback->contentViewController().get())
                ->showForm({u"Not sent yet."_s, {}, {}}, {});
        else if (name == u"checking"_s)
            panel->showChecking();
        else if (name.isEmpty())
            return m_main->window();
        else if (name == u"upToDate"_s)
            panel->showUpToDate(u"1.5"_s);
        else
            panel->showOffer({u"1.6"_s, u"1.5"_s, u"New"_s, QUrl(u"https://get.example/"_s)},
                             UpdateViewController::Arrival::Asked);
        return inFront();
    }

    ui::Window *openedDonation() const
    {
        m_main->mainViewController()->presentViewControllerAsModalWindow(
            Storyboard::named(u"Main"_s).instantiate<DonateViewController>(u"DonateViewController"_s));
        return inFront();
    }

    /// The window that opened last, once keys go to it.
    ui::Window *inFront() const
    {
        ui::Window *window = ui::Window::openWindows().last();
        const bool isActive = QTest::qWaitFor([&] { return window->isActiveWindow(); });
        return isActive ? window : nullptr;
    }

    static void press(const ui::Window *window, Qt::Key key)
    {
        QTest::keyClick(window->windowHandle(), key, Qt::ControlModifier);
    }

private Q_SLOTS:
    void initTestCase() { registerScenes(); }
    void init()
    {
        m_service = ScriptedSubtitleService::install();
        m_metadata = ScriptedMetadataService::install();
        m_main = std::make_unique<MainWindowController>();
        m_main->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(m_main->window()));
        m_updates = UpdateViewController::makeWindow();
        m_feedback = FeedbackViewController::makeWindow();
    }
    void cleanup()
    {
        QApplication::closeAllWindows(); // a prompt outlives the window that it came up in
        m_main.reset();
        m_updates.reset();
        m_feedback.reset();
    }

    void shortcutsWorkInEveryWindow_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<Qt::Key>("key");
        for (const char *window :
             {"preferencesAction", "aboutAction", "checking", "offer", "upToDate", "feedback"}) {
            for (const auto &[name, key] : {std::pair("W", Qt::Key_W), std::pair("Q", Qt::Key_Q),
                                            std::pair(",", Qt::Key_Comma), std::pair("O", Qt::Key_O)})
                QTest::addRow("%s %s", window, name) << QString::fromLatin1(window) << key;
        }
        QTest::newRow("main window Q") << QString() << Qt::Key_Q;
    }
    void shortcutsWorkInEveryWindow()
    {
        QFETCH(const QString, window);
        QFETCH(const Qt::Key, key);
        ui::Window *shown = opened(window);
        QVERIFY(shown);
        press(shown, key);
        if (key == Qt::Key_W) {
            QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{m_main->window()});
        } else if (key == Qt::Key_Q) {
            QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>());
        } else if (key == Qt::Key_Comma) {
            const ui::Window *preferences = window == u"preferencesAction"_s ? shown : inFront();
            QVERIFY(preferences);
            QCOMPARE(preferences->windowTitle(), u"General"_s);
            QVERIFY(shown->isVisible());
        } else {
            QTRY_VERIFY(qobject_cast<QFileDialog *>(QApplication::activeModalWidget()));
            QApplication::activeModalWidget()->close();
        }
    }

    void textOfAReportTakesNoneOfThemAsText()
    {
        ui::Window *shown = opened(u"feedback"_s);
        QVERIFY(shown);
        const auto *text = shown->findChild<QPlainTextEdit *>();
        QTRY_VERIFY(text->hasFocus());
        press(shown, Qt::Key_W);
        QVERIFY(!shown->isVisible());
        QCOMPARE(text->toPlainText(), u"Not sent yet."_s);
    }

    void controlWClosesTheDonationPromptWithoutAnAnswer()
    {
        ui::Window *prompt = openedDonation();
        QVERIFY(prompt);
        press(prompt, Qt::Key_W);
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>{m_main->window()});
        QVERIFY(!UserDefaults::standard().object(u"dontAskMeToDonate"_s).isValid());
        QVERIFY(!UserDefaults::standard().object(u"askMeToDonateLater"_s).isValid());
        QCOMPARE(m_service->downloadCount(), 0);
    }

    void controlQEndsFromTheDonationPrompt()
    {
        ui::Window *prompt = openedDonation();
        QVERIFY(prompt);
        press(prompt, Qt::Key_Q);
        QCOMPARE(ui::Window::openWindows(), QList<ui::Window *>());
    }

    /// What would open another window behind the prompt does not.
    void nothingOpensBehindTheDonationPrompt_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("preferences") << Qt::Key_Comma;
        QTest::newRow("open video") << Qt::Key_O;
    }
    void nothingOpensBehindTheDonationPrompt()
    {
        QFETCH(const Qt::Key, key);
        ui::Window *prompt = openedDonation();
        QVERIFY(prompt);
        press(prompt, key);
        QCOMPARE(ui::Window::openWindows(), (QList<ui::Window *>{m_main->window(), prompt}));
        QCOMPARE(QApplication::activeModalWidget(), prompt);
    }
};

PLOVENDIX_GUI_TEST(WindowShortcutsTest)
#include "WindowShortcutsTest.moc"
