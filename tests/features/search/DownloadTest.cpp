#include "DownloadFixture.h"

#include <features/search/DownloadPrompt.h>
#include <tests/support/TestMain.h>

#include <QFileDialog>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{
/// A prompt that comes up, or does not, and counts its calls.
struct ScriptedPrompt final : DownloadPrompt
{
    bool presentBeforeDownload(MainViewController &controller) override
    {
        ++asked;
        presenter = &controller;
        return comesUp;
    }
    void noteDelivery() override { ++deliveries; }

    bool comesUp = false;
    int asked = 0;
    int deliveries = 0;
    MainViewController *presenter = nullptr;
};
} // namespace

/// The start of downloads, the prompt before them, their end and the ways they are interrupted.
class DownloadTest final : public DownloadTestCase
{
    Q_OBJECT

private:
    ScriptedPrompt m_prompt;

    bool isDownloading() const { return m_view->controller->isDownloading(); }
    qsizetype downloads() const { return m_view->service->downloadCount(); }
    void clickCancel() const { QTest::mouseClick(m_view->widget("cancelDownloadButton"), Qt::LeftButton); }
    void startDownloads(int count) const
    {
        searchVideo();
        m_view->table()->selectRow(0);
        for (int number = 0; number < count; ++number)
            m_view->controller->download(nullptr);
        QCOMPARE(downloads(), count);
    }
    void expectNothingMore() const
    {
        m_view->turn();
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!sheet());
    }

private Q_SLOTS:
    void init()
    {
        DownloadTestCase::init();
        m_prompt = {};
        m_view->controller->setDownloadPrompt(&m_prompt);
    }

    void nothingSelectedDownloadsNothing()
    {
        m_view->controller->download(nullptr);
        m_view->showResults(2);
        m_view->controller->download(nullptr);
        QCOMPARE(downloads(), 0);
        QCOMPARE(m_prompt.asked, 0);
        QVERIFY(!isDownloading());
    }

    void buttonDoubleClickAndKeysDownloadTheSelectedRow()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
        QCOMPARE(m_view->service->downloaded(0)->subFileName, u"Film.2"_s);
        const QPoint row = m_view->table()->visualRect(m_view->table()->model()->index(2, 0)).center();
        QTest::mouseClick(m_view->table()->viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(m_view->table()->viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(downloads(), 2);
        QCOMPARE(m_view->service->downloaded(1)->subFileName, u"Film.3"_s);
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Return);
        m_view->press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(downloads(), 4);
    }

    void promptThatComesUpTakesTheDownloadOver()
    {
        m_prompt.comesUp = true;
        searchVideo();
        downloadFirst();
        QCOMPARE(m_prompt.presenter, m_view->controller.get());
        m_view->press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(m_prompt.asked, 2);
        QCOMPARE(downloads(), 0);
        QVERIFY(!isDownloading());
        // The operations themselves do not prompt, nor does a download with the sheet forced.
        m_view->controller->downloadSelectedSubtitle();
        m_view->controller->saveSelectedSubtitleAs();
        m_view->controller->cancelDownload(nullptr);
        QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton, Qt::AltModifier);
        QCOMPARE(m_prompt.asked, 2);
        QCOMPARE(downloads(), 3);
    }

    void promptCountsWhatReachedThePerson()
    {
        downloadVideo();
        QCOMPARE(m_prompt.asked, 1);
        answerSheet(false);
        downloadFirst();
        QCOMPARE(alertDuring([this] { finishWith(refusal()); }), refusal().localizedDescription);
        QCOMPARE(m_prompt.deliveries, 0);
        downloadVideo();
        answerSheet(true);
        QCOMPARE(m_prompt.deliveries, 1);
        downloadVideo(tessaly());
        QCOMPARE(m_prompt.deliveries, 2);
    }

    void flagIsSetUntilTheCompletionWasHandled()
    {
        QWidget *cancel = m_view->widget("cancelDownloadButton");
        searchVideo();
        m_view->table()->selectRow(0);
        QVERIFY(!cancel->isVisible());
        downloadFirst();
        QVERIFY(isDownloading());
        QVERIFY(!m_view->downloadButton()->isEnabled());
        QVERIFY(cancel->isVisible());
        QCOMPARE(cancel->accessibleName(), u"Cancel download"_s);
        m_view->service->finishDownload(0, downloadedFile());
        QVERIFY(isDownloading()); // cleared on the main queue only
        m_view->turn();
        QVERIFY(sheet()); // which does not set it
        QVERIFY(!isDownloading());
        QVERIFY(m_view->downloadButton()->isEnabled());
        QVERIFY(!cancel->isVisible());
    }

    void failureShowsTheServicesOwnErrorThenClearsTheFlag()
    {
        searchVideo();
        downloadFirst();
        m_sandbox.clearPrintedLines();
        bool flagDuringAlert = false;
        QVERIFY(whileAlertIsUp([this] { finishWith(refusal()); },
                               [&] {
                                   flagDuringAlert = isDownloading();
                                   dismissAlert();
                               }));
        QVERIFY(flagDuringAlert);
        QVERIFY(!isDownloading());
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void withoutAWindowOnlyTheFlagIsCleared()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, refusal());
        m_view->service->finishDownload(1, downloadedFile());
        m_view->window->setContentViewController({});
        QVERIFY(alertDuring([this] { m_view->turn(); }).isEmpty());
        QVERIFY(!sheet());
        QVERIFY(exists(u"downloads/A.srt"_s));
        QVERIFY(!isDownloading());
    }

    void cancelledDownloadIsNotDelivered()
    {
        searchVideo(tessaly());
        downloadFirst();
        clickCancel();
        QCOMPARE(m_view->service->downloadCancellations, 1);
        QVERIFY(!isDownloading());
        QVERIFY(m_view->downloadButton()->isEnabled());
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QVERIFY(m_workspace->opened.isEmpty());
        // What was found stays, and can be downloaded again.
        downloadFirst();
        QVERIFY(isDownloading());
        finishWith(downloadedFile());
        QCOMPARE(m_workspace->opened.size(), 1);
    }

    /// The file is on its way to the companion application, which may take long, when the person cancels.
    void cancelDuringTheDeliverySaysNothingOfIt_data()
    {
        QTest::addColumn<bool>("isReplyTaken");
        QTest::newRow("reply taken") << true;
        QTest::newRow("reply refused") << false;
    }
    void cancelDuringTheDeliverySaysNothingOfIt()
    {
        QFETCH(const bool, isReplyTaken);
        m_workspace->takesURLs = isReplyTaken;
        searchVideo(tessaly());
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile()); // its blocks wait
        QCOMPARE(m_workspace->opened.size(), 1);
        clickCancel();
        QVERIFY(!isDownloading());
        m_view->turn();
        QCOMPARE(delivered(), QString());
        QVERIFY(!sheet());
    }

    void endOfACancelledDownloadLeavesTheNextOnesFlag()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, refusal());
        clickCancel();
        downloadFirst();
        QCOMPARE(alertDuring([this] { m_view->turn(); }), QString());
        QVERIFY(isDownloading());
        finishWith(downloadedFile());
        QVERIFY(!isDownloading());
        QVERIFY(sheet());
    }

    /// Delivery runs on the service's thread while searches change the file and the requester on the main
    /// thread.
    void deliveryReadsSnapshotsWhileSearchesRun()
    {
        searchVideo();
        m_view->table()->selectRow(0);
        std::vector<std::thread> workers;
        for (int round = 0; round < 50; ++round) {
            m_view->controller->download(nullptr);
            workers.emplace_back(
                [answer = m_view->service->takeDownloadCompletion(round)] { answer(refusal()); });
            m_view->controller->searchForFile(m_video, tessaly());
            const qsizetype last = m_view->service->queries.size() - 1;
            workers.emplace_back([answer = m_view->service->takeCompletion(last)] { answer(answerWith(1)); });
        }
        for (std::thread &worker : workers)
            worker.join();
        QCOMPARE(alertDuring([this] { m_view->turn(); }), refusal().localizedDescription);
        QVERIFY(!isDownloading());
        QVERIFY(!m_view->controller->isSearching());
    }

    void windowMayCloseUnderAnAlert_data()
    {
        QTest::addColumn<QString>("of");
        for (const char *of : {"a search", "a download", "a move"})
            QTest::newRow(of) << QString::fromLatin1(of);
    }
    void windowMayCloseUnderAnAlert()
    {
        QFETCH(QString, of);
        startDownloads(2);
        m_view->search();
        const bool isMove = of == u"a move"_s;
        if (isMove) // the file is there already; the second sheet waits for the first
            m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        m_view->service->finishLast(of == u"a search"_s ? Result<QueryResult>(refusal()) : answerWith(3));
        m_view->service->finishDownload(0, of == u"a download"_s ? Result<QUrl>(refusal())
                                                                 : downloadedFile(u"B.srt"_s));
        m_view->service->finishDownload(1, downloadedFile());
        if (isMove)
            m_view->turn();
        QVERIFY(whileAlertIsUp(
            [&] {
                if (isMove)
                    answerSheet(true);
                else
                    m_view->turn();
            },
            [this] { // the controller lives on until its alert returns
                m_view->window.reset();
                m_view->controller.reset();
            }));
        expectNothingMore();
        QVERIFY(exists(u"downloads/A.srt"_s));
    }

    void windowMayCloseUnderASheetThatAnotherWaitsFor()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, downloadedFile());
        m_view->service->finishDownload(1, downloadedFile(u"B.srt"_s));
        m_view->turn();
        QVERIFY(sheet());
        close();
        expectNothingMore();
        QVERIFY(exists(u"downloads/A.srt"_s));
        QVERIFY(exists(u"downloads/B.srt"_s));
    }

    void windowMayCloseWhileADownloadRuns()
    {
        startDownloads(2);
        const auto failing = m_view->service->takeDownloadCompletion(0);
        const auto ending = m_view->service->takeDownloadCompletion(1);
        close();
        failing(refusal());
        ending(downloadedFile());
        expectNothingMore();
    }

    void downloadThatEndsUnderAnAlertWaitsForIt()
    {
        startDownloads(2);
        bool sheetDuringAlert = true;
        m_view->service->finishDownload(0, refusal());
        const bool seen = whileAlertIsUp([this] { m_view->turn(); },
                                         [&] {
                                             m_view->service->finishDownload(1, downloadedFile());
                                             m_view->turn(); // nothing runs while the alert's block does
                                             sheetDuringAlert = sheet() != nullptr;
                                             dismissAlert();
                                         });
        QVERIFY(seen);
        QVERIFY(!sheetDuringAlert);
        QTRY_VERIFY(sheet());
        QVERIFY(!isDownloading()); // the first to end has cleared it
    }

    void searchAndFailureUnderASheetLeaveTheSheet()
    {
        startDownloads(2);
        m_view->search();
        m_view->service->finishDownload(0, downloadedFile());
        m_view->turn();
        QVERIFY(sheet());
        m_view->answer(5);
        QCOMPARE(m_view->title(), u"Plovendix (5 subtitles found)"_s);
        QCOMPARE(alertDuring([this] { finishWith(refusal()); }), refusal().localizedDescription);
        QVERIFY(sheet());
        answerSheet(true); // the file and the name are those of when the download ended
        QVERIFY(exists(u"videos/a.b.pob.srt"_s));
    }
};

PLOVENDIX_GUI_TEST(DownloadTest)
#include "DownloadTest.moc"
