#include "DownloadFixture.h"

#include <tests/support/TestMain.h>
#include <ui/dialogs/SavePanel.h>

#include <QFileDialog>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

class CompanionSendTest final : public DownloadTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void requestSendsToTheCompanion()
    {
        downloadVideo(tessaly());
        QVERIFY(!sheet());
        QVERIFY(exists(u"Movies/Plovendix/A.pob.srt"_s));
        QCOMPARE(m_workspace->opened.size(), 1);
        QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
        QCOMPARE(m_workspace->opened.first().host(), u"plovendix-file"_s);
        QVERIFY(m_workspace->opened.first().query().endsWith(u"docid=42"_s));
        QCOMPARE(delivered(), u"Sent to Tessaly"_s);
        QVERIFY(!m_view->controller->isDownloading());
    }

    void errorsAreInTheirOrder()
    {
        using Errors = MainViewController::SendSubtitleErrors;
        QCOMPARE(static_cast<int>(Errors::couldNotFindMoviesFolder), 0);
        QCOMPARE(static_cast<int>(Errors::plovendixFolderNotPresent), 1);
    }

    void onlyOptionAloneForcesTheSheet_data()
    {
        QTest::addColumn<QString>("by");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("forced");
        const auto row = [](const char *name, const QString &by, Qt::KeyboardModifiers modifiers,
                            bool forced) {
            QTest::addRow("%s by %s", name, qPrintable(by)) << by << int(modifiers.toInt()) << forced;
        };
        for (const QString &by : {u"button"_s, u"double click"_s, u"Return"_s}) {
            row("Option", by, Qt::AltModifier, true);
            row("Option and Shift", by, Qt::AltModifier | Qt::ShiftModifier, false);
        }
        row("Shift", u"button"_s, Qt::ShiftModifier, false);
        row("Control", u"button"_s, Qt::ControlModifier, false);
        row("Option and Control", u"button"_s, Qt::AltModifier | Qt::ControlModifier, false);
        row("Option and Meta", u"button"_s, Qt::AltModifier | Qt::MetaModifier, false);
        row("Option and a key of the keypad", u"button"_s, Qt::AltModifier | Qt::KeypadModifier, true);
        row("Option in another layout", u"button"_s, Qt::AltModifier | Qt::GroupSwitchModifier, true);
    }
    void onlyOptionAloneForcesTheSheet()
    {
        QFETCH(QString, by);
        QFETCH(int, modifiers);
        QFETCH(bool, forced);
        const auto held = Qt::KeyboardModifiers::fromInt(modifiers);
        searchVideo(tessaly());
        TableView *table = m_view->table();
        table->selectRow(0);
        table->setFocus();
        const QPoint row = table->visualRect(table->model()->index(0, 0)).center();
        if (by == u"button"_s) {
            QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton, held);
        } else if (by == u"Return"_s) {
            m_view->press(Qt::Key_Return, held);
        } else {
            QTest::mouseClick(table->viewport(), Qt::LeftButton, held, row);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, held, row);
        }
        QCOMPARE(m_view->service->downloadCount(), 1);
        finishWith(downloadedFile());
        QCOMPARE(sheet() != nullptr, forced);
        QCOMPARE(m_workspace->opened.size(), forced ? 0 : 1);
    }

    void optionCountsWhenTheDownloadStarts()
    {
        searchVideo(tessaly());
        downloadFirst();
        QTest::mouseClick(m_view->widget("detailView"), Qt::LeftButton, Qt::AltModifier); // held only later
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
        QTest::mouseClick(m_view->widget("detailView"), Qt::LeftButton);
    }

    void saveAsAlwaysShowsTheSheet()
    {
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        m_view->controller->saveSelectedSubtitleAs();
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QVERIFY(m_workspace->opened.isEmpty());
    }

    void refusedReplyFallsBackToTheSheetAndSaysWhereTheFileLies()
    {
        m_workspace->takesURLs = false;
        downloadVideo(tessaly());
        QVERIFY(exists(u"Movies/Plovendix/A.pob.srt"_s));
        QCOMPARE(delivered(), u"The file is in “%1”."_s.arg(m_sandbox.path(u"Movies/Plovendix"_s)));
        QTest::mouseClick(m_view->widget("showInFolderButton"), Qt::LeftButton);
        QCOMPARE(m_workspace->shown,
                 QList<QUrl>{QUrl::fromLocalFile(m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s))});
        // The file has been moved already, so accepting the sheet reports that it is gone.
        QVERIFY(!saveAndReadTheAlert().isEmpty());
    }

    void failedDeliveryFallsBackToTheSheetInSilence_data()
    {
        QTest::addColumn<bool>("hasMovies");
        QTest::addColumn<QString>("scheme");
        QTest::newRow("no Movies folder") << false << u"tessaly3"_s;
        QTest::newRow("scheme of the web") << true << u"https"_s;
    }
    void failedDeliveryFallsBackToTheSheetInSilence()
    {
        QFETCH(bool, hasMovies);
        QFETCH(QString, scheme);
        if (!hasMovies)
            m_files->setMovies({});
        searchVideo(ExternalRequestInfo{scheme, u"42"_s, u"Unknown"_s});
        downloadFirst();
        QVERIFY(alertDuring([this] { finishWith(downloadedFile()); }).isEmpty());
        QVERIFY(m_workspace->opened.isEmpty());
        QVERIFY(sheet());
        answerSheet(true);
        QVERIFY(exists(u"videos/a.b.pob.srt"_s));
    }

    void panelAndDeliveryAreMadeOnTheServicesThread_data()
    {
        QTest::addColumn<bool>("toCompanion");
        QTest::newRow("sheet") << false;
        QTest::newRow("companion") << true; // the panel is thrown away
    }
    void panelAndDeliveryAreMadeOnTheServicesThread()
    {
        QFETCH(bool, toCompanion);
        QList<std::thread::id> madeOn;
        qsizetype openedBefore = -1;
        SavePanel::setObserver([&] {
            madeOn += std::this_thread::get_id();
            openedBefore = m_workspace->opened.size();
        });
        searchVideo(toCompanion ? std::optional(tessaly()) : std::nullopt);
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile()); // the main queue has not run
        SavePanel::setObserver({});
        QCOMPARE(madeOn.size(), 1);
        QVERIFY(madeOn.first() != std::this_thread::get_id());
        QCOMPARE(openedBefore, 0);
        QCOMPARE(m_workspace->opened.size(), toCompanion ? 1 : 0);
        if (toCompanion)
            QCOMPARE(m_workspace->openedOn, madeOn.first());
        QVERIFY(m_view->controller->isDownloading());
        m_view->turn();
        QCOMPARE(sheet() == nullptr, toCompanion);
    }

    void requestOfTheDownloadsEndIsServed()
    {
        searchVideo();
        downloadFirst();
        m_view->controller->searchForFile(m_video, tessaly());
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
        searchVideo(tessaly());
        downloadFirst();
        m_view->controller->cancelQuery(nullptr);
        finishWith(downloadedFile(u"Own.Name.srt"_s));
        QCOMPARE(m_workspace->opened.size(), 1);
        QVERIFY(sheet());
        QCOMPARE(sheetName()->text(), u"Own.Name.srt"_s);
    }

    /// The main thread takes up and forgets the request all the time, while downloads are delivered on a
    /// thread of the service's.
    void requestForgottenDuringTheDeliveryIsServedWhole()
    {
        struct InstantMoves final : FileManager
        {
            std::optional<QUrl> moviesFolder() const override { return QUrl(u"file:///movies"_s); }
            bool fileExists(const QUrl &) const override { return true; }
            Result<void> moveItemReplacing(const QUrl &, const QUrl &) override { return {}; }
        };
        FileManager::setDefaultManager(std::make_shared<InstantMoves>());
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        m_view->controller->download(nullptr);
        const auto answer = m_view->service->takeDownloadCompletion(0);
        constexpr int Replies = 5'000;
        std::atomic<bool> isOver = false;
        std::thread service([&] {
            while (m_workspace->opened.size() < Replies)
                answer(QUrl(u"file:///downloads/A.srt"_s));
            isOver = true;
        });
        // Holds up deliveries where they ask for the file manager.
        std::thread another([&] {
            while (!isOver)
                FileManager::defaultManager();
        });
        while (!isOver) {
            m_view->controller->searchForFile(m_video, tessaly());
            m_view->controller->cancelQuery(nullptr);
        }
        service.join();
        another.join();
        MainQueue::shared().clear();
        for (const QUrl &reply : std::as_const(m_workspace->opened))
            QCOMPARE(reply.scheme(), u"tessaly3"_s);
    }
};

PLOVENDIX_GUI_TEST(CompanionSendTest)
#include "CompanionSendTest.moc"
