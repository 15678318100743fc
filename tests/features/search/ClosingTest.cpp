#include "DownloadFixture.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>

#include <QFile>
#include <QFileDialog>

using namespace Qt::StringLiterals;

/// What arrives while an alert or a sheet is up, and the window closing at any such moment.
class ClosingTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void whileTheAlertOfASearchIsUp()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->controller->searchForText(u"b"_s, std::nullopt);
        m_view->service->finish(0, refusal());
        m_view->service->finish(1, answerWith(3));
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); }, [this] { close(); }));
        expectNothingMore();
    }

    void whileTheAlertOfADownloadIsUp()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, refusal());
        m_view->service->finishDownload(1, downloadedFile());
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); }, [this] { close(); }));
        expectNothingMore();
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
    }

    void whileTheAlertOfAMoveIsUp()
    {
        m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        startDownloads(2);
        m_view->service->finishDownload(0, downloadedFile());
        m_view->service->finishDownload(1, downloadedFile(u"B.srt"_s)); // its sheet waits for the first
        m_view->turn();
        QVERIFY(whileAlertIsUp([this] { answerSheet(true); }, [this] { close(); }));
        expectNothingMore();
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
    }

    void whileAnotherSheetWaits()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, downloadedFile());
        m_view->service->finishDownload(1, downloadedFile(u"B.srt"_s));
        m_view->turn();
        QVERIFY(sheet());
        close();
        expectNothingMore();
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/B.srt"_s)));
    }

    void whileThePanelSlides()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(50);
        m_view->table()->selectRow(40);
        close();
        expectNothingMore();
    }

    void whileADownloadRuns()
    {
        startDownloads(1);
        const auto answer = m_view->service->takeDownloadCompletion(0);
        close();
        answer(refusal());
        expectNothingMore();
    }

    void downloadThatEndsUnderAnAlertWaitsForIt()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, refusal());
        bool sheetDuringAlert = true;
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
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void searchThatEndsUnderASheetIsShown()
    {
        startDownloads(1);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        finishWith(downloadedFile());
        QVERIFY(sheet());
        m_view->service->finishLast(answerWith(5));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (5 subtitles found)"_s);
        QVERIFY(sheet());
        answerSheet(true); // the file and the name are those of when the download ended
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void downloadThatFailsUnderASheetLeavesTheSheet()
    {
        startDownloads(2);
        m_view->service->finishDownload(0, downloadedFile());
        m_view->turn();
        QVERIFY(sheet());
        m_view->service->finishDownload(1, refusal());
        QCOMPARE(alertDuring([this] { m_view->turn(); }), refusal().localizedDescription);
        QVERIFY(sheet());
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

private:
    /// Lets window and controller go, as the program does when its window was closed.
    void close()
    {
        m_gone = m_view->controller;
        m_view->window.reset();
        m_view->controller.reset();
    }
    void expectNothingMore()
    {
        m_view->turn();
        QVERIFY(m_gone.expired());
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!sheet());
        m_view = std::make_unique<MainViewFixture>();
    }
    void startDownloads(int count)
    {
        searchVideo();
        m_view->table()->selectRow(0);
        for (int number = 0; number < count; ++number)
            m_view->controller->download(nullptr);
        QCOMPARE(m_view->service->downloadCount(), count);
    }

    std::weak_ptr<MainViewController> m_gone;
};

PLOVENDIX_GUI_TEST(ClosingTest)
#include "ClosingTest.moc"
