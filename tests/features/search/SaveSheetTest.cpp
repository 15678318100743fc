#include "DownloadFixture.h"

#include <tests/support/FaultyCalls.h>
#include <tests/support/TestMain.h>
#include <ui/dialogs/SavePanel.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>

#include <cerrno>

using namespace Qt::StringLiterals;

/// The save sheet, and what a person sees, and keeps, when the file cannot go where they want it.
class SaveSheetTest final : public DownloadTestCase
{
    Q_OBJECT

private:
    const QString m_saved = u"videos/a.b.pob.srt"_s;
    QStringList videos() const
    {
        return QDir(m_sandbox.path(u"videos"_s)).entryList(QDir::Files | QDir::Hidden);
    }

private Q_SLOTS:
    void sheetSuggestsTheVideosNameInItsFolder()
    {
        downloadVideo();
        QCOMPARE(sheet()->windowTitle(), u"Save"_s);
        QCOMPARE(sheetName()->text(), u"a.b.pob.srt"_s);
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos"_s));
    }

    void sheetIsPreparedInFull()
    {
        searchVideo();
        const auto panel = std::make_shared<SavePanel>();
        panel->title = u"Another"_s;
        panel->extensionHidden = true;
        panel->canSelectHiddenExtension = false;
        m_view->controller->presentSavePanel(panel, u"Suggested.srt"_s, downloadedFile());
        QCOMPARE(panel->title, u"Save"_s);
        QCOMPARE(panel->directoryURL, m_video); // the video itself, not its folder
        QCOMPARE(panel->nameFieldStringValue, u"Suggested.srt"_s);
        QVERIFY(!panel->extensionHidden);
        QVERIFY(panel->canSelectHiddenExtension);
    }

    void sheetForATextSearchSuggestsTheFilesName()
    {
        m_view->showResults(1);
        downloadFirst();
        finishWith(downloadedFile(u"Own.Name.srt"_s));
        QCOMPARE(sheetName()->text(), u"Own.Name.srt"_s);
        QVERIFY(sheet()->directory() != QDir::current());
    }

    void acceptedSheetMovesTheFileAndSaysSo()
    {
        const QUrl file = downloadVideo();
        answerSheet(true);
        QVERIFY(exists(m_saved));
        QVERIFY(!QFile::exists(file.toLocalFile()));
        QCOMPARE(delivered(), u"Saved as a.b.pob.srt"_s);
        QTest::mouseClick(m_view->widget("showInFolderButton"), Qt::LeftButton);
        QCOMPARE(m_workspace->shown, QList<QUrl>{QUrl::fromLocalFile(m_sandbox.path(m_saved))});
    }

    void cancelledSheetLeavesTheFile()
    {
        const QUrl file = downloadVideo();
        QVERIFY(alertDuring([this] { answerSheet(false); }).isEmpty());
        QVERIFY(QFile::exists(file.toLocalFile()));
        QCOMPARE(videos(), QStringList{u"a.b.mp4"_s});
        QCOMPARE(delivered(), QString());
    }

    void newSearchDecidesWhereTheFileGoes()
    {
        searchVideo();
        downloadFirst();
        m_view->controller->searchForFile(
            QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/Other.mkv"_s, "video")), std::nullopt);
        m_view->service->finishDownload(0, downloadedFile()); // the name is made here
        m_view->controller->searchForFile(
            QUrl::fromLocalFile(m_sandbox.writeFile(u"elsewhere/Third.mkv"_s, "video")), std::nullopt);
        m_view->turn(); // the folder is taken here
        QCOMPARE(sheetName()->text(), u"Other.pob.srt"_s);
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"elsewhere"_s));
    }

    void videoThatIsGoneStillNamesItsFolder()
    {
        QVERIFY(QFile::remove(m_video.toLocalFile()));
        downloadVideo();
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos"_s));
    }

    void secondDownloadWhileTheSheetIsOpen()
    {
        downloadVideo();
        m_view->controller->download(nullptr);
        QCOMPARE(m_view->service->downloadCount(), 2);
        finishWith(downloadedFile(u"two.srt"_s));
        answerSheet(false);
        QTRY_VERIFY(sheet());
        answerSheet(true);
        QVERIFY(exists(m_saved));
    }

    void deliveryIsSaidUntilTheNextStep_data()
    {
        using Step = std::function<void(MainViewController &)>;
        QTest::addColumn<Step>("step");
        QTest::newRow("search") << Step(
            [](MainViewController &view) { view.searchForText(u"another"_s, std::nullopt); });
        QTest::newRow("clearing") << Step([](MainViewController &view) { view.cancelQuery(nullptr); });
        QTest::newRow("download") << Step([](MainViewController &view) { view.downloadSelectedSubtitle(); });
    }
    void deliveryIsSaidUntilTheNextStep()
    {
        QFETCH(std::function<void(MainViewController &)>, step);
        downloadVideo();
        answerSheet(true);
        QVERIFY(!delivered().isEmpty());
        QVERIFY(m_view->widget("showInFolderButton")->isVisible());
        step(*m_view->controller);
        QVERIFY(delivered().isEmpty());
        QVERIFY(!m_view->widget("showInFolderButton")->isVisible());
        m_view->controller->showInFolder(nullptr);
        QVERIFY(m_workspace->shown.isEmpty());
    }

    void diskThatRefusesIsAnErrorAndNothingIsLost_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<int>("failure");
        QTest::addColumn<QString>("reason");
        QTest::newRow("full disk") << u"write"_s << ENOSPC << u"there is not enough free space"_s;
        QTest::newRow("read-only disk") << u"open"_s << EROFS << u"the disk can only be read"_s;
    }
    void diskThatRefusesIsAnErrorAndNothingIsLost()
    {
        QFETCH(QString, call);
        QFETCH(int, failure);
        QFETCH(QString, reason);
        const QUrl file = downloadVideo();
        const auto calls = std::make_shared<FaultyCalls>();
        calls->otherDisk = m_sandbox.path(u"videos"_s).toUtf8();
        calls->failingName = call;
        calls->failure = failure;
        FileManager::setDefaultManager(std::make_shared<FileManager>(calls));
        const QString shown = saveAndReadTheAlert();
        QVERIFY2(shown.contains(reason) && shown.contains(u"A.srt"_s), qUtf8Printable(shown));
        QVERIFY(QFile::exists(file.toLocalFile()));
        QCOMPARE(videos(), QStringList{u"a.b.mp4"_s});
        QCOMPARE(delivered(), QString());
        m_view->turn();
        QVERIFY(!sheet()); // it comes back after a taken name alone
    }

    void errorOfAMoveIsTheFileManagersOwn()
    {
        downloadVideo();
        m_files->moveError = base::Error{u"Files"_s, 4, u"Not today."_s};
        m_sandbox.clearPrintedLines();
        QCOMPARE(saveAndReadTheAlert(), u"Not today."_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void takenNameIsKeptAndTheSheetComesBackAsItWas()
    {
        const QString there = m_sandbox.writeFile(u"videos/sub folder/My name.srt"_s, "mine");
        const QUrl file = downloadVideo();
        sheet()->setDirectory(m_sandbox.path(u"videos/sub folder"_s));
        sheetName()->setText(u"My name.srt"_s);
        for (int times = 0; times < 3; ++times) {
            const QString shown = saveAndReadTheAlert();
            QVERIFY2(shown.contains(u"already exists"_s), qUtf8Printable(shown));
            QVERIFY(sheet());
            QCOMPARE(sheetName()->text(), u"My name.srt"_s);
            QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos/sub folder"_s));
            QVERIFY(QFile::exists(file.toLocalFile()));
        }
        QFile kept(there);
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("mine"));
        sheetName()->setText(u"My other name.srt"_s);
        QVERIFY(saveAndReadTheAlert().isEmpty());
        QVERIFY(!sheet());
        QVERIFY(exists(u"videos/sub folder/My other name.srt"_s));
        QCOMPARE(delivered(), u"Saved as My other name.srt"_s);
    }

    void afterATakenNameTheSheetMayBeCancelled()
    {
        m_sandbox.writeFile(m_saved, "mine");
        const QUrl file = downloadVideo();
        QVERIFY(!saveAndReadTheAlert().isEmpty());
        answerSheet(false);
        QVERIFY(!sheet());
        QVERIFY(QFile::exists(file.toLocalFile()));
        QCOMPARE(delivered(), QString());
    }

    void windowThatClosesWithTheAlertGetsNoSheet()
    {
        m_sandbox.writeFile(m_saved, "mine");
        downloadVideo();
        const bool came = whileAlertIsUp([this] { answerSheet(true); },
                                         [this] {
                                             m_view->window->setContentViewController({});
                                             dismissAlert();
                                         });
        QVERIFY(came);
        m_view->turn();
        QVERIFY(!sheet());
    }
};

PLOVENDIX_GUI_TEST(SaveSheetTest)
#include "SaveSheetTest.moc"
