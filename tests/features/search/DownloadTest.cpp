#include "DownloadFixture.h"

#include <tests/support/TestMain.h>

#include <QFileDialog>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;

class DownloadTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void nothingSelectedDownloadsNothing()
    {
        m_view->showResults(2);
        m_view->controller->download(nullptr);
        QCOMPARE(m_view->service->downloadCount(), 0);
        QVERIFY(!m_view->controller->isDownloading());
    }

    void noResultListDownloadsNothing()
    {
        m_view->controller->download(nullptr);
        QCOMPARE(m_view->service->downloadCount(), 0);
    }

    void selectedRowIsDownloadedOnce()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
        QCOMPARE(m_view->service->downloadCount(), 1);
        QCOMPARE(m_view->service->downloaded(0)->subFileName, u"Film.2"_s);
    }

    void doubleClickAndReturnDownload()
    {
        m_view->showResults(3);
        const QRect row = m_view->table()->visualRect(m_view->table()->model()->index(2, 0));
        QTest::mouseClick(m_view->table()->viewport(), Qt::LeftButton, {}, row.center());
        QTest::mouseDClick(m_view->table()->viewport(), Qt::LeftButton, {}, row.center());
        QCOMPARE(m_view->service->downloadCount(), 1);
        QCOMPARE(m_view->service->downloaded(0)->subFileName, u"Film.3"_s);
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Return);
        QCOMPARE(m_view->service->downloadCount(), 2);
        m_view->press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(m_view->service->downloadCount(), 3);
    }

    void flagIsSetUntilTheCompletionWasHandled()
    {
        searchVideo();
        downloadFirst();
        QVERIFY(m_view->controller->isDownloading());
        QVERIFY(!m_view->downloadButton()->isEnabled());
        m_view->service->finishDownload(0, downloadedFile());
        QVERIFY(m_view->controller->isDownloading()); // cleared on the main queue only
        m_view->turn();
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(m_view->downloadButton()->isEnabled());
    }

    void flagIsClearedWhileTheSheetIsOpen()
    {
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QVERIFY(!m_view->controller->isDownloading());
    }

    void failureShowsTheServicesOwnErrorThenClearsTheFlag()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, refusal());
        bool flagDuringAlert = false;
        QTimer look;
        connect(&look, &QTimer::timeout, this,
                [&] { flagDuringAlert |= m_view->controller->isDownloading(); });
        look.start(0);
        const QString shown = alertDuring([this] { m_view->turn(); });
        QCOMPARE(shown, u"No more downloads today."_s);
        QVERIFY(flagDuringAlert);
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(m_sandbox.printedLines().filter(u"No more"_s).isEmpty());
    }

    void failureWithoutAWindowOnlyClearsTheFlag()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, refusal());
        m_view->window->setContentViewController({});
        QVERIFY(alertDuring([this] { m_view->turn(); }).isEmpty());
        QVERIFY(!m_view->controller->isDownloading());
    }

    void secondDownloadMayStartWhileOneRuns()
    {
        searchVideo();
        downloadFirst();
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Return);
        QCOMPARE(m_view->service->downloadCount(), 2);
        m_view->service->finishDownload(0, downloadedFile());
        m_view->turn();
        QVERIFY(!m_view->controller->isDownloading()); // whichever ends first clears it
        m_view->service->finishDownload(1, refusal());
        QCOMPARE(alertDuring([this] { m_view->turn(); }), refusal().localizedDescription);
    }

    void cancelledDownloadIsNotDelivered()
    {
        searchVideo(tessaly());
        downloadFirst();
        QTest::mouseClick(m_view->widget("cancelDownloadButton"), Qt::LeftButton);
        QCOMPARE(m_view->service->downloadCancellations, 1);
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(m_view->downloadButton()->isEnabled());
        const QString shown = alertDuring([this] { finishWith(downloadedFile()); });
        QVERIFY(shown.isEmpty());
        QVERIFY(!sheet());
        QVERIFY(m_workspace->opened.isEmpty());
        // What was found stays, and can be downloaded again.
        downloadFirst();
        QVERIFY(m_view->controller->isDownloading());
        QCOMPARE(m_view->service->downloadCount(), 2);
        finishWith(downloadedFile());
        QCOMPARE(m_workspace->opened.size(), 1);
    }

    void cancelDuringTheDeliverySaysNothingOfIt_data()
    {
        QTest::addColumn<bool>("isReplyTaken");
        QTest::newRow("reply taken") << true;
        QTest::newRow("reply refused") << false;
    }

    /// The file is on its way to the companion application, which may take long, when the person cancels.
    void cancelDuringTheDeliverySaysNothingOfIt()
    {
        QFETCH(const bool, isReplyTaken);
        m_workspace->takesURLs = isReplyTaken;
        searchVideo(tessaly());
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile()); // its blocks wait
        QCOMPARE(m_workspace->opened.size(), 1);
        QTest::mouseClick(m_view->widget("cancelDownloadButton"), Qt::LeftButton);
        QVERIFY(!m_view->controller->isDownloading());
        m_view->turn();
        QVERIFY(!m_view->widget("deliveryLabel")->isVisible());
        QVERIFY(!sheet());
    }

    void endOfACancelledDownloadLeavesTheNextOnesFlag()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, refusal());
        QTest::mouseClick(m_view->widget("cancelDownloadButton"), Qt::LeftButton);
        downloadFirst();
        QCOMPARE(alertDuring([this] { m_view->turn(); }), QString());
        QVERIFY(m_view->controller->isDownloading());
        finishWith(downloadedFile());
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(sheet());
    }

    void cancelButtonIsThereWhileADownloadRuns()
    {
        searchVideo();
        m_view->table()->selectRow(0);
        QWidget *button = m_view->widget("cancelDownloadButton");
        QVERIFY(button);
        QVERIFY(!button->isVisible());
        downloadFirst();
        QVERIFY(button->isVisible());
        QCOMPARE(button->accessibleName(), u"Cancel download"_s);
        finishWith(downloadedFile());
        QVERIFY(!button->isVisible());
    }

    void completionAfterTheControllerHasGone()
    {
        searchVideo();
        downloadFirst();
        const auto answer = m_view->service->takeDownloadCompletion(0);
        m_view->window.reset();
        m_view->controller.reset();
        answer(downloadedFile());
        m_view->turn();
        QVERIFY(!sheet());
        m_view = std::make_unique<MainViewFixture>();
    }

    /// Delivery runs on the service's thread while searches change the file and the requester on the main
    /// thread.
    void deliveryReadsSnapshotsWhileSearchesRun()
    {
        searchVideo();
        m_view->table()->selectRow(0);
        constexpr int Rounds = 50;
        std::vector<std::thread> workers;
        for (int round = 0; round < Rounds; ++round) {
            m_view->controller->download(nullptr);
            workers.emplace_back(
                [answer = m_view->service->takeDownloadCompletion(round)] { answer(refusal()); });
            m_view->controller->searchForFile(m_video, tessaly());
            workers.emplace_back([answer = m_view->service->takeCompletion(m_view->service->queries.size() -
                                                                           1)] { answer(answerWith(1)); });
        }
        for (std::thread &worker : workers)
            worker.join();
        const QString shown = alertDuring([this] { m_view->turn(); });
        QCOMPARE(shown, u"No more downloads today."_s);
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(!m_view->controller->isSearching());
    }
};

PLOVENDIX_GUI_TEST(DownloadTest)
#include "DownloadTest.moc"
