#include "MainViewFixture.h"

#include <platform/FileManager.h>
#include <platform/Label.h>
#include <platform/Workspace.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QSignalSpy>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};

struct OpenedURLs final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        opened += url;
        return accepts;
    }
    bool showInFileBrowser(const QUrl &file) override
    {
        shown += file;
        return true;
    }
    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &) override { return {}; }

    QList<QUrl> opened;
    QList<QUrl> shown;
    bool accepts = true;
};

struct FilesWithMovies final : FileManager
{
    explicit FilesWithMovies(const QString &movies) : folder(movies) {}
    std::optional<QUrl> moviesFolder() const override { return folder.isEmpty() ? std::nullopt : path(); }
    std::optional<QUrl> path() const { return QUrl::fromLocalFile(folder); }
    QString folder;
};

Error refusal()
{
    return Error{u"Service"_s, 9, u"No more downloads today."_s};
}
} // namespace

class DownloadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nothingSelectedDownloadsNothing();
    void noResultListDownloadsNothing();
    void selectedRowIsDownloadedOnce();
    void doubleClickAndReturnDownload();
    void flagIsSetUntilTheCompletionWasHandled();
    void flagIsClearedWhileTheSheetIsOpen();
    void failureShowsTheServicesOwnErrorThenClearsTheFlag();
    void completionAfterTheControllerHasGone();
    void sheetSuggestsTheVideosNameInItsFolder();
    void sheetForATextSearchSuggestsTheFilesName();
    void acceptedSheetMovesTheFileAndSaysSo();
    void cancelledSheetLeavesTheFile();
    void existingFileIsAnErrorAndKept();
    void vanishedSourceIsAnError();
    void noWindowNoSheet();
    void requestSendsToTheCompanion();
    void optionAloneForcesTheSheet();
    void optionWithShiftSends();
    void refusedReplyFallsBackToTheSheet();
    void noMoviesFolderFallsBackToTheSheet();
    void newSearchDecidesWhereTheFileGoes();
    void secondDownloadWhileTheSheetIsOpen();
    void saveAsAlwaysShowsTheSheet();
    void showInFolderShowsTheSavedFile();
    void windowClosedWithTheSheetOpen();
    void deliveryReadsSnapshotsWhileSearchesRun();

private:
    QUrl downloadedFile(const QString &name = u"A.srt"_s) const;
    QFileDialog *sheet() const;
    void searchVideo(const std::optional<ExternalRequestInfo> &request = {}) const;
    void downloadFirst() const;
    void finishWith(const QUrl &file) const;
    void answerSheet(bool accept) const;

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
    std::shared_ptr<OpenedURLs> m_workspace;
    std::shared_ptr<FilesWithMovies> m_files;
    QUrl m_video;
};

void DownloadTest::init()
{
    m_workspace = std::make_shared<OpenedURLs>();
    Workspace::setSharedWorkspace(m_workspace);
    m_files = std::make_shared<FilesWithMovies>(m_sandbox.path(u"Movies"_s));
    FileManager::setDefaultManager(m_files);
    for (const QString &folder : {u"Movies"_s, u"videos"_s, u"downloads"_s}) {
        QDir(m_sandbox.path(folder)).removeRecursively();
        QDir().mkpath(m_sandbox.path(folder));
    }
    m_video = QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/a.b.mp4"_s, "video"));
    m_view = std::make_unique<MainViewFixture>();
    m_sandbox.clearPrintedLines();
}

void DownloadTest::cleanup()
{
    m_view.reset();
    FileManager::setDefaultManager({});
    Workspace::setSharedWorkspace({});
}

QUrl DownloadTest::downloadedFile(const QString &name) const
{
    return QUrl::fromLocalFile(m_sandbox.writeFile(u"downloads/"_s + name, "subtitle"));
}

QFileDialog *DownloadTest::sheet() const
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget); dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

void DownloadTest::searchVideo(const std::optional<ExternalRequestInfo> &request) const
{
    m_view->controller->searchForFile(m_video, request);
    auto result = std::make_shared<Subtitle>();
    result->subFileName = u"A"_s;
    result->subLanguageID = u"POB"_s;
    result->subFormat = u"SRT"_s;
    m_view->service->finishLast(answerWith({result}));
    m_view->turn();
}

void DownloadTest::downloadFirst() const
{
    m_view->table()->selectRow(0);
    QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
}

void DownloadTest::finishWith(const QUrl &file) const
{
    m_view->service->finishDownload(m_view->service->downloadCount() - 1, file);
    m_view->turn();
}

void DownloadTest::answerSheet(bool accept) const
{
    QFileDialog *dialog = sheet();
    QVERIFY(dialog);
    if (accept)
        QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
    else
        QTest::keyClick(dialog, Qt::Key_Escape);
    m_view->turn();
}

void DownloadTest::nothingSelectedDownloadsNothing()
{
    m_view->showResults(2);
    m_view->controller->download(nullptr);
    QCOMPARE(m_view->service->downloadCount(), 0);
    QVERIFY(!m_view->controller->isDownloading());
}

void DownloadTest::noResultListDownloadsNothing()
{
    m_view->controller->download(nullptr);
    QCOMPARE(m_view->service->downloadCount(), 0);
}

void DownloadTest::selectedRowIsDownloadedOnce()
{
    m_view->showResults(3);
    m_view->table()->selectRow(1);
    QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
    QCOMPARE(m_view->service->downloadCount(), 1);
    QCOMPARE(m_view->service->downloaded(0)->subFileName, u"Film.2"_s);
}

void DownloadTest::doubleClickAndReturnDownload()
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

void DownloadTest::flagIsSetUntilTheCompletionWasHandled()
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

void DownloadTest::flagIsClearedWhileTheSheetIsOpen()
{
    searchVideo();
    downloadFirst();
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QVERIFY(!m_view->controller->isDownloading());
}

void DownloadTest::failureShowsTheServicesOwnErrorThenClearsTheFlag()
{
    searchVideo();
    downloadFirst();
    m_view->service->finishDownload(0, refusal());
    bool flagDuringAlert = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] { flagDuringAlert |= m_view->controller->isDownloading(); });
    look.start(0);
    const QString shown = alertDuring([this] { m_view->turn(); });
    QCOMPARE(shown, u"No more downloads today."_s);
    QVERIFY(flagDuringAlert);
    QVERIFY(!m_view->controller->isDownloading());
    QVERIFY(m_sandbox.printedLines().filter(u"No more"_s).isEmpty());
}

void DownloadTest::completionAfterTheControllerHasGone()
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

void DownloadTest::sheetSuggestsTheVideosNameInItsFolder()
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

void DownloadTest::sheetForATextSearchSuggestsTheFilesName()
{
    m_view->showResults(1);
    downloadFirst();
    finishWith(downloadedFile(u"Own.Name.srt"_s));
    QVERIFY(sheet());
    QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Own.Name.srt"_s);
    QVERIFY(sheet()->directory() != QDir::current());
}

void DownloadTest::acceptedSheetMovesTheFileAndSaysSo()
{
    searchVideo();
    downloadFirst();
    const QUrl file = downloadedFile();
    finishWith(file);
    answerSheet(true);
    QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    QVERIFY(!QFile::exists(file.toLocalFile()));
    QCOMPARE(m_view->child<Label>("deliveryLabel")->text(), u"Saved as a.b.pob.srt"_s);
    QVERIFY(m_view->child<Label>("deliveryLabel")->isVisible());
}

void DownloadTest::cancelledSheetLeavesTheFile()
{
    searchVideo();
    downloadFirst();
    const QUrl file = downloadedFile();
    finishWith(file);
    const QString shown = alertDuring([this] { answerSheet(false); });
    QVERIFY(shown.isEmpty());
    QVERIFY(QFile::exists(file.toLocalFile()));
    QCOMPARE(QDir(m_sandbox.path(u"videos"_s)).entryList(QDir::Files), QStringList{u"a.b.mp4"_s});
    QVERIFY(!m_view->child<Label>("deliveryLabel")->isVisible());
}

void DownloadTest::existingFileIsAnErrorAndKept()
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

void DownloadTest::vanishedSourceIsAnError()
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

void DownloadTest::noWindowNoSheet()
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

void DownloadTest::requestSendsToTheCompanion()
{
    searchVideo(Tessaly);
    downloadFirst();
    finishWith(downloadedFile());
    QVERIFY(!sheet());
    const QString delivered = m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s);
    QVERIFY(QFile::exists(delivered));
    QCOMPARE(m_workspace->opened.size(), 1);
    QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
    QCOMPARE(m_workspace->opened.first().host(), u"plovendix-file"_s);
    QCOMPARE(m_view->child<Label>("deliveryLabel")->text(), u"Sent to Tessaly"_s);
    QVERIFY(!m_view->controller->isDownloading());
}

void DownloadTest::optionAloneForcesTheSheet()
{
    searchVideo(Tessaly);
    m_view->table()->selectRow(0);
    m_view->table()->setFocus();
    m_view->press(Qt::Key_Return, Qt::AltModifier);
    QCOMPARE(m_view->service->downloadCount(), 1);
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QVERIFY(m_workspace->opened.isEmpty());
}

void DownloadTest::optionWithShiftSends()
{
    searchVideo(Tessaly);
    m_view->table()->selectRow(0);
    m_view->table()->setFocus();
    m_view->press(Qt::Key_Return, Qt::AltModifier | Qt::ShiftModifier);
    QCOMPARE(m_view->service->downloadCount(), 1);
    finishWith(downloadedFile());
    QVERIFY(!sheet());
    QCOMPARE(m_workspace->opened.size(), 1);
}

void DownloadTest::refusedReplyFallsBackToTheSheet()
{
    m_workspace->accepts = false;
    searchVideo(Tessaly);
    downloadFirst();
    finishWith(downloadedFile());
    QVERIFY(sheet());
    // The file has been moved already, so accepting the sheet reports that it is gone.
    const QString shown = alertDuring([this] { answerSheet(true); });
    QVERIFY(!shown.isEmpty());
    QVERIFY(QFile::exists(m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s)));
}

void DownloadTest::noMoviesFolderFallsBackToTheSheet()
{
    m_files->folder.clear();
    searchVideo(Tessaly);
    downloadFirst();
    const QString shown = alertDuring([this] { finishWith(downloadedFile()); });
    QVERIFY(shown.isEmpty());
    QVERIFY(sheet());
    QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
}

void DownloadTest::newSearchDecidesWhereTheFileGoes()
{
    searchVideo();
    downloadFirst();
    const QUrl other = QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/Other.mkv"_s, "video"));
    m_view->controller->searchForFile(other, std::nullopt);
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Other.pob.srt"_s);
}

void DownloadTest::secondDownloadWhileTheSheetIsOpen()
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

void DownloadTest::saveAsAlwaysShowsTheSheet()
{
    searchVideo(Tessaly);
    m_view->table()->selectRow(0);
    m_view->controller->saveSelectedSubtitleAs();
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QVERIFY(m_workspace->opened.isEmpty());
}

void DownloadTest::showInFolderShowsTheSavedFile()
{
    searchVideo();
    downloadFirst();
    finishWith(downloadedFile());
    answerSheet(true);
    QTest::mouseClick(m_view->widget("showInFolderButton"), Qt::LeftButton);
    QCOMPARE(m_workspace->shown, QList<QUrl>{QUrl::fromLocalFile(m_sandbox.path(u"videos/a.b.pob.srt"_s))});
}

void DownloadTest::windowClosedWithTheSheetOpen()
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

/// Delivery runs on the service's thread while searches change the file and the requester on the main thread.
void DownloadTest::deliveryReadsSnapshotsWhileSearchesRun()
{
    searchVideo();
    m_view->table()->selectRow(0);
    constexpr int Rounds = 50;
    std::vector<std::thread> workers;
    for (int round = 0; round < Rounds; ++round) {
        m_view->controller->download(nullptr);
        workers.emplace_back(
            [answer = m_view->service->takeDownloadCompletion(round)] { answer(refusal()); });
        m_view->controller->searchForFile(m_video, Tessaly);
        workers.emplace_back([answer = m_view->service->takeCompletion(m_view->service->queries.size() - 1)] {
            answer(answerWith(1));
        });
    }
    for (std::thread &worker : workers)
        worker.join();
    const QString shown = alertDuring([this] { m_view->turn(); });
    QCOMPARE(shown, u"No more downloads today."_s);
    QVERIFY(!m_view->controller->isDownloading());
    QVERIFY(!m_view->controller->isSearching());
}

QTEST_MAIN(DownloadTest)
#include "DownloadTest.moc"
