#include "DownloadFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/dialogs/SavePanel.h>

#include <QFile>
#include <QFileDialog>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

class CompanionSendTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void requestSendsToTheCompanion()
    {
        searchVideo(tessaly());
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        const QString delivered = m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s);
        QVERIFY(QFile::exists(delivered));
        QCOMPARE(m_workspace->opened.size(), 1);
        QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
        QCOMPARE(m_workspace->opened.first().host(), u"plovendix-file"_s);
        QCOMPARE(m_view->child<ui::Label>("deliveryLabel")->text(), u"Sent to Tessaly"_s);
        QVERIFY(!m_view->controller->isDownloading());
    }

    void optionAloneForcesTheSheet()
    {
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Return, Qt::AltModifier);
        QCOMPARE(m_view->service->downloadCount(), 1);
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QVERIFY(m_workspace->opened.isEmpty());
    }

    void optionWithADoubleClickForcesTheSheet_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("forced");
        QTest::newRow("none") << int(Qt::NoModifier) << false;
        QTest::newRow("Option") << int(Qt::AltModifier) << true;
        QTest::newRow("Option and Shift") << int(Qt::AltModifier | Qt::ShiftModifier) << false;
    }

    void optionWithADoubleClickForcesTheSheet()
    {
        QFETCH(int, modifiers);
        QFETCH(bool, forced);
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        QWidget *rows = m_view->table()->viewport();
        const QPoint row = m_view->table()->visualRect(m_view->table()->model()->index(0, 0)).center();
        const auto held = Qt::KeyboardModifiers::fromInt(modifiers);
        QTest::mouseClick(rows, Qt::LeftButton, held, row);
        QTest::mouseDClick(rows, Qt::LeftButton, held, row);
        QCOMPARE(m_view->service->downloadCount(), 1);
        finishWith(downloadedFile());
        QCOMPARE(sheet() != nullptr, forced);
        QCOMPARE(m_workspace->opened.size(), forced ? 0 : 1);
    }

    void optionWithShiftSends()
    {
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Return, Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(m_view->service->downloadCount(), 1);
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
    }

    void refusedReplyFallsBackToTheSheet()
    {
        m_workspace->takesURLs = false;
        searchVideo(tessaly());
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(sheet());
        // The file has been moved already, so accepting the sheet reports that it is gone.
        const QString shown = alertDuring([this] { answerSheet(true); });
        QVERIFY(!shown.isEmpty());
        QVERIFY(QFile::exists(m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s)));
    }

    void refusedReplySaysWhereTheFileLies()
    {
        m_workspace->takesURLs = false;
        searchVideo(tessaly());
        downloadFirst();
        finishWith(downloadedFile());
        answerSheet(false);
        auto *label = m_view->child<ui::Label>("deliveryLabel");
        QVERIFY(label->isVisible());
        QCOMPARE(label->text(), u"The file is in “%1”."_s.arg(m_sandbox.path(u"Movies/Plovendix"_s)));
        QTest::mouseClick(m_view->widget("showInFolderButton"), Qt::LeftButton);
        QCOMPARE(m_workspace->shown,
                 QList<QUrl>{QUrl::fromLocalFile(m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s))});
    }

    void schemeOfTheWebIsNotRepliedTo()
    {
        searchVideo(ExternalRequestInfo{u"https"_s, u"42"_s, u"Unknown"_s});
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(m_workspace->opened.isEmpty());
        QVERIFY(sheet());
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void noMoviesFolderFallsBackToTheSheet()
    {
        m_files->setMovies({});
        searchVideo(tessaly());
        downloadFirst();
        const QString shown = alertDuring([this] { finishWith(downloadedFile()); });
        QVERIFY(shown.isEmpty());
        QVERIFY(sheet());
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
    }

    void errorsAreInTheirOrder()
    {
        using Errors = MainViewController::SendSubtitleErrors;
        QCOMPARE(static_cast<int>(Errors::couldNotFindMoviesFolder), 0);
        QCOMPARE(static_cast<int>(Errors::plovendixFolderNotPresent), 1);
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

    void onlyOptionAloneForcesTheSheet_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("forced");
        const auto row = [](const char *name, Qt::KeyboardModifiers modifiers, bool forced) {
            QTest::newRow(name) << int(modifiers.toInt()) << forced;
        };
        row("none", Qt::NoModifier, false);
        row("Option", Qt::AltModifier, true);
        row("Shift", Qt::ShiftModifier, false);
        row("Control", Qt::ControlModifier, false);
        row("Option and Shift", Qt::AltModifier | Qt::ShiftModifier, false);
        row("Option and Control", Qt::AltModifier | Qt::ControlModifier, false);
        row("Option and Meta", Qt::AltModifier | Qt::MetaModifier, false);
        row("Option and a key of the keypad", Qt::AltModifier | Qt::KeypadModifier, true);
        row("Option in another layout", Qt::AltModifier | Qt::GroupSwitchModifier, true);
    }

    void onlyOptionAloneForcesTheSheet()
    {
        QFETCH(int, modifiers);
        QFETCH(bool, forced);
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton,
                          Qt::KeyboardModifiers::fromInt(modifiers));
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

    void deliveryRunsOnTheServicesThread()
    {
        searchVideo(tessaly());
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile());
        // Before the main queue has run.
        QCOMPARE(m_workspace->opened.size(), 1);
        QVERIFY(m_workspace->openedOn != std::this_thread::get_id());
        QVERIFY(m_view->controller->isDownloading());
        m_view->turn();
        QVERIFY(!m_view->controller->isDownloading());
    }

    void panelIsMadeOnTheServicesThread_data()
    {
        QTest::addColumn<bool>("toCompanion");
        QTest::newRow("for a sheet") << false;
        QTest::newRow("thrown away after a delivery") << true;
    }

    void panelIsMadeOnTheServicesThread()
    {
        QFETCH(bool, toCompanion);
        searchVideo(toCompanion ? std::optional(tessaly()) : std::nullopt);
        downloadFirst();
        QList<std::thread::id> madeOn;
        qsizetype openedBefore = -1;
        SavePanel::setObserver([&] {
            madeOn += std::this_thread::get_id();
            openedBefore = m_workspace->opened.size();
        });
        m_view->service->finishDownload(0, downloadedFile());
        m_view->turn();
        SavePanel::setObserver({});
        QCOMPARE(madeOn.size(), 1);
        QVERIFY(madeOn.first() != std::this_thread::get_id());
        QCOMPARE(openedBefore, 0);
        QCOMPARE(sheet() == nullptr, toCompanion);
        QCOMPARE(m_workspace->opened.size(), toCompanion ? 1 : 0);
    }

    void requestThatCameMeanwhileIsServed()
    {
        searchVideo();
        downloadFirst();
        m_view->controller->searchForFile(m_video, tessaly());
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
    }

    void requestForgottenMeanwhileIsNotServed()
    {
        searchVideo(tessaly());
        downloadFirst();
        m_view->controller->cancelQuery(nullptr);
        finishWith(downloadedFile(u"Own.Name.srt"_s));
        QVERIFY(m_workspace->opened.isEmpty());
        QVERIFY(sheet());
        QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Own.Name.srt"_s);
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
