#include <features/donation/DonateViewController.h>
#include <features/donation/DonationPrompt.h>

#include <base/Bundle.h>
#include <tests/features/search/DownloadFixture.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>

#include <QApplication>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace
{
const QString DeclinedKey = u"dontAskMeToDonate"_s;
const QString LaterKey = u"askMeToDonateLater"_s;
} // namespace

/// The donation prompt in front of the main view's download, answered as a person does.
class DonateViewControllerTest final : public DownloadTestCase
{
    Q_OBJECT

private:
    QDateTime m_now{QDate(2026, 3, 1), QTime(12, 0), Qt::UTC};
    std::unique_ptr<DonationPrompt> m_prompt;
    std::shared_ptr<DonateViewController> m_donate;
    int m_settings = 0;

    static bool flag(const QString &key) { return UserDefaults::standard().boolean(key); }
    static bool isStored(const QString &key) { return UserDefaults::standard().object(key).isValid(); }
    /// The prompt that is up, or nothing.
    static ui::Window *promptWindow()
    {
        for (ui::Window *window : ui::Window::openWindows()) {
            if (window->findChild<QPushButton *>(u"buyMeACoffeeButton"_s))
                return window;
        }
        return nullptr;
    }
    static void press(const QString &button)
    {
        QVERIFY(promptWindow());
        QTest::mouseClick(promptWindow()->findChild<QPushButton *>(button), Qt::LeftButton);
    }
    qsizetype downloads() const { return m_view->service->downloadCount(); }
    /// Presents the prompt over the main view without asking the rule.
    void present(const QString &page = Links::DonationPage)
    {
        m_donate = ViewController::make<DonateViewController>(page);
        m_view->controller->presentViewControllerAsModalWindow(m_donate);
        QVERIFY(promptWindow());
    }

private Q_SLOTS:
    void initTestCase() { registerDonationScene(); }
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_settings)));
        DownloadTestCase::init();
        m_prompt = std::make_unique<DonationPrompt>([this] { return m_now; });
        m_view->controller->setDownloadPrompt(m_prompt.get());
    }
    void cleanup()
    {
        if (ui::Window *prompt = promptWindow())
            prompt->contentViewController()->dismissController();
        m_donate.reset();
        DownloadTestCase::cleanup();
        m_prompt.reset();
        Bundle::main().setPreferredLocalizations({});
    }

    void eachAnswerClosesDownloadsAndIsStoredThen_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("steps");
        const QStringList download{u"download, prompt gone, nothing stored"_s};
        // Whether the browser takes the page changes nothing.
        QTest::newRow("later") << u"maybeLaterButton"_s << LaterKey << download;
        QTest::newRow("never") << u"dontAskMeAgainButton"_s << DeclinedKey << download;
        QTest::newRow("donate") << u"buyMeACoffeeButton"_s << DeclinedKey
                                << download +
                                       QStringList{Links::DonationPage + u", prompt gone, nothing stored"_s};
    }
    void eachAnswerClosesDownloadsAndIsStoredThen()
    {
        QFETCH(QString, button);
        QFETCH(QString, key);
        QFETCH(QStringList, steps);
        m_workspace->takesURLs = false;
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        present();
        QStringList taken;
        const auto note = [&taken](const QString &step) {
            taken += step + (promptWindow() ? u", prompt up"_s : u", prompt gone"_s) +
                     (isStored(DeclinedKey) || isStored(LaterKey) ? u", stored"_s : u", nothing stored"_s);
        };
        connect(m_view->controller.get(), &MainViewController::isDownloadingChanged, m_donate.get(),
                [&] { note(u"download"_s); });
        m_workspace->whenOpened = [&] { note(m_workspace->opened.last().toString()); };
        press(button);
        QCOMPARE(taken, steps);
        QVERIFY(!promptWindow());
        QCOMPARE(m_view->service->downloaded(0)->subFileName, u"Film.2"_s);
        QVERIFY(flag(key));
        QVERIFY(!isStored(key == LaterKey ? DeclinedKey : LaterKey));
    }

    void aPageThatIsNoURLStoresNothing()
    {
        m_view->showResults(1);
        m_view->table()->selectRow(0);
        present(u"https://no host/"_s);
        press(u"buyMeACoffeeButton"_s);
        QVERIFY(!promptWindow());
        QCOMPARE(downloads(), 1);
        QVERIFY(m_workspace->opened.isEmpty());
        QVERIFY(!isStored(DeclinedKey));
        QVERIFY(!isStored(LaterKey));
    }

    void withNothingSelectedTheAnswerIsRememberedAllTheSame()
    {
        m_view->showResults(2);
        present();
        press(u"maybeLaterButton"_s);
        QVERIFY(!promptWindow());
        QCOMPARE(downloads(), 0);
        QVERIFY(flag(LaterKey));
    }

    void presentedByAnythingElseItDownloadsNothing()
    {
        m_view->showResults(1);
        m_view->table()->selectRow(0);
        const auto other = ViewController::make<ViewController>();
        m_donate = ViewController::make<DonateViewController>();
        other->presentViewControllerAsModalWindow(m_donate);
        press(u"dontAskMeAgainButton"_s);
        QVERIFY(!promptWindow());
        QVERIFY(flag(DeclinedKey));
        QCOMPARE(downloads(), 0);
        // It does not either without a presenter.
        const auto alone = ViewController::make<DonateViewController>();
        QVERIFY(alone->view());
        alone->maybeLater(nullptr);
        QVERIFY(flag(LaterKey));
        QCOMPARE(downloads(), 0);
    }

    void escapeAndClosingAreNoAnswer_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Escape") << Qt::Key_Escape;
        QTest::newRow("close") << Qt::Key_W;
    }
    void escapeAndClosingAreNoAnswer()
    {
        QFETCH(Qt::Key, key);
        m_view->showResults(1);
        m_view->table()->selectRow(0);
        present();
        QTRY_COMPARE(QApplication::activeWindow(), promptWindow());
        QTest::keyClick(promptWindow()->windowHandle(), key,
                        key == Qt::Key_W ? Qt::ControlModifier : Qt::NoModifier);
        QTRY_VERIFY(!promptWindow());
        QVERIFY(!m_donate->presentingViewController());
        QCOMPARE(downloads(), 0);
        QVERIFY(!isStored(DeclinedKey));
        QVERIFY(!isStored(LaterKey));
    }

    void theTextSaysWhatAnswersAndClosingDo_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : {u"en"_s, u"de"_s, u"es"_s, u"fr"_s, u"ja"_s, u"pt-BR"_s})
            QTest::addRow("%s", qPrintable(language)) << language;
    }
    void theTextSaysWhatAnswersAndClosingDo()
    {
        QFETCH(QString, language);
        Bundle::main().setPreferredLocalizations({language});
        present();
        const auto *text = promptWindow()->findChild<QLabel *>(u"explanationLabel"_s);
        if (language == u"en")
            QCOMPARE(text->text(),
                     u"A small donation helps to keep it going. Each answer starts your download; "
                     "closing this window cancels it."_s);
        // All of it fits above the buttons.
        const auto *button = promptWindow()->findChild<QPushButton *>(u"maybeLaterButton"_s);
        QTRY_VERIFY(text->height() >= text->heightForWidth(text->width()));
        const int end = text->mapTo(promptWindow(), QPoint(0, text->height())).y();
        QVERIFY(end <= button->mapTo(promptWindow(), QPoint()).y());
    }

    void promptIsModalAndStartsWhereKeysDoNoHarm()
    {
        present();
        QCOMPARE(promptWindow()->windowTitle(), u"Support Plovendix"_s);
        QCOMPARE(promptWindow()->windowModality(), Qt::ApplicationModal);
        QVERIFY(!promptWindow()->isResizable());
        const auto *focused = qobject_cast<QPushButton *>(promptWindow()->focusWidget());
        QVERIFY(focused);
        QCOMPARE(focused->text(), u"Maybe Later"_s);
    }

    void thePromptComesInFrontOfTheSixthDownload()
    {
        for (int time = 0; time < 4; ++time)
            m_prompt->noteDelivery();
        searchVideo();
        downloadFirst();
        QVERIFY(!promptWindow());
        finishWith(downloadedFile());
        answerSheet(true);
        downloadFirst();
        QVERIFY(promptWindow());
        QCOMPARE(downloads(), 1);
        press(u"maybeLaterButton"_s);
        QCOMPARE(downloads(), 2);
        m_view->controller->cancelDownload(nullptr);
        downloadFirst();
        QVERIFY(!promptWindow());
        QCOMPARE(downloads(), 3);
    }
};

PLOVENDIX_GUI_TEST(DonateViewControllerTest)
#include "DonateViewControllerTest.moc"
