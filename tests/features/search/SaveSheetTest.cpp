#include "DownloadFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/dialogs/SavePanel.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>

using namespace Qt::StringLiterals;

class SaveSheetTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void sheetSuggestsTheVideosNameInItsFolder()
    {
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        QFileDialog *dialog = sheet();
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), u"Save"_s);
        QCOMPARE(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"a.b.pob.srt"_s);
        QCOMPARE(dialog->directory().path(), m_sandbox.path(u"videos"_s));
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
        QVERIFY(sheet());
        QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Own.Name.srt"_s);
        QVERIFY(sheet()->directory() != QDir::current());
    }

    void acceptedSheetMovesTheFileAndSaysSo()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
        QVERIFY(!QFile::exists(file.toLocalFile()));
        QCOMPARE(m_view->child<ui::Label>("deliveryLabel")->text(), u"Saved as a.b.pob.srt"_s);
        QVERIFY(m_view->child<ui::Label>("deliveryLabel")->isVisible());
    }

    void cancelledSheetLeavesTheFile()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        const QString shown = alertDuring([this] { answerSheet(false); });
        QVERIFY(shown.isEmpty());
        QVERIFY(QFile::exists(file.toLocalFile()));
        QCOMPARE(QDir(m_sandbox.path(u"videos"_s)).entryList(QDir::Files), QStringList{u"a.b.mp4"_s});
        QVERIFY(!m_view->child<ui::Label>("deliveryLabel")->isVisible());
    }

    void existingFileIsAnErrorAndKept()
    {
        const QString there = m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        const QString shown = alertDuring([this] { answerSheet(true); });
        QVERIFY2(shown.contains(u"a.b.pob.srt"_s), qUtf8Printable(shown));
        QFile kept(there);
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("mine"));
        QVERIFY(QFile::exists(file.toLocalFile()));
    }

    void vanishedSourceIsAnError()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        QVERIFY(QFile::remove(file.toLocalFile()));
        const QString shown = alertDuring([this] { answerSheet(true); });
        QVERIFY(!shown.isEmpty());
        QVERIFY(!QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void noWindowNoSheet()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile());
        m_view->window->setContentViewController({});
        m_view->turn();
        QVERIFY(!sheet());
        QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
        QVERIFY(!m_view->controller->isDownloading());
    }

    void newSearchDecidesWhereTheFileGoes()
    {
        searchVideo();
        downloadFirst();
        const QUrl other = QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/Other.mkv"_s, "video"));
        m_view->controller->searchForFile(other, std::nullopt);
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Other.pob.srt"_s);
    }

    void secondDownloadWhileTheSheetIsOpen()
    {
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile(u"one.srt"_s));
        QVERIFY(sheet());
        m_view->controller->download(nullptr);
        QCOMPARE(m_view->service->downloadCount(), 2);
        finishWith(downloadedFile(u"two.srt"_s));
        answerSheet(false);
        QTRY_VERIFY(sheet());
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void showInFolderShowsTheSavedFile()
    {
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        answerSheet(true);
        QTest::mouseClick(m_view->widget("showInFolderButton"), Qt::LeftButton);
        QCOMPARE(m_workspace->shown,
                 QList<QUrl>{QUrl::fromLocalFile(m_sandbox.path(u"videos/a.b.pob.srt"_s))});
    }

    void windowClosedWithTheSheetOpen()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        QVERIFY(sheet());
        m_view->window.reset();
        m_view->turn();
        QVERIFY(!sheet());
        QVERIFY(QFile::exists(file.toLocalFile()));
        m_view = std::make_unique<MainViewFixture>();
    }

    void sheetOpensWhereTheFileIsWhenItIsShown()
    {
        searchVideo();
        downloadFirst();
        m_view->service->finishDownload(0, downloadedFile()); // the name is made here
        const QUrl other = QUrl::fromLocalFile(m_sandbox.writeFile(u"elsewhere/Other.mkv"_s, "video"));
        m_view->controller->searchForFile(other, std::nullopt);
        m_view->turn();
        QVERIFY(sheet());
        QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"a.b.pob.srt"_s);
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"elsewhere"_s));
    }

    void videoThatIsGoneStillNamesItsFolder()
    {
        searchVideo();
        downloadFirst();
        QVERIFY(QFile::remove(m_video.toLocalFile()));
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos"_s));
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void whatWasDeliveredIsSaidUntilTheNextStep_data()
    {
        using Step = std::function<void(MainViewController &)>;
        QTest::addColumn<Step>("step");
        QTest::newRow("search") << Step(
            [](MainViewController &view) { view.searchForText(u"another"_s, std::nullopt); });
        QTest::newRow("clearing") << Step([](MainViewController &view) { view.cancelQuery(nullptr); });
        QTest::newRow("download") << Step([](MainViewController &view) { view.downloadSelectedSubtitle(); });
    }

    void whatWasDeliveredIsSaidUntilTheNextStep()
    {
        QFETCH(std::function<void(MainViewController &)>, step);
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        answerSheet(true);
        QVERIFY(m_view->child<ui::Label>("deliveryLabel")->isVisible());
        QVERIFY(m_view->widget("showInFolderButton")->isVisible());
        step(*m_view->controller);
        QVERIFY(!m_view->child<ui::Label>("deliveryLabel")->isVisible());
        QVERIFY(!m_view->widget("showInFolderButton")->isVisible());
        m_view->controller->showInFolder(nullptr);
        QVERIFY(m_workspace->shown.isEmpty());
    }
};

PLOVENDIX_GUI_TEST(SaveSheetTest)
#include "SaveSheetTest.moc"
