#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};

/// Looks at the controller at the very moment it asks.
struct LookingService final : SubtitleService
{
    void query(const QList<Arg> &, QueryCompletion) override
    {
        wasSearching = controller->isSearching();
        title = button->text();
    }
    void cancelQueryTask() override {}
    void download(const SubtitlePtr &, DownloadCompletion) override {}
    void cancelDownloads() override {}

    MainViewController *controller = nullptr;
    QPushButton *button = nullptr;
    bool wasSearching = false;
    QString title;

protected:
    std::optional<VideoHash> computeHash(const QUrl &) override
    {
        wasSearching = controller->isSearching();
        return VideoHash{u"0123456789abcdef"_s, 1};
    }
    VideoFileComponents componentsOf(const QUrl &) override { return {.searchString = u"words"_s}; }
};
} // namespace

class FileSearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void startsIdle()
    {
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(m_view->cancelButton()->isHidden());
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QVERIFY(!m_view->widget("scrollView")->isVisible());
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    }

    void fileSearchAsksForSizeHashAndLanguageInThatOrder()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        const QList<Arg> expected = {{Param::byteSize, u"1234567"_s},
                                     {Param::movieHash, u"0123456789abcdef"_s},
                                     {Param::language, u"eng"_s}};
        QCOMPARE(m_view->service->queries.size(), 1);
        QVERIFY(m_view->service->queries.first() == expected);
        QCOMPARE(static_cast<int>(Param::byteSize), 2);
        QCOMPARE(static_cast<int>(Param::movieHash), 3);
        QCOMPARE(static_cast<int>(Param::text), 4);
        QCOMPARE(static_cast<int>(Param::language), 6);
    }

    void sizeIsPrintedUnsignedWithoutSeparators()
    {
        m_view->service->hash = VideoHash{u"ffffffffffffffff"_s, std::numeric_limits<quint64>::max()};
        m_view->controller->searchForFile(Video, std::nullopt);
        QCOMPARE(m_view->service->queries.first().first().value, u"18446744073709551615"_s);
    }

    void fileSearchShowsTheNameAndKeepsFileAndRequest()
    {
        QSignalSpy searching(m_view->controller.get(), &MainViewController::isSearchingChanged);
        m_view->controller->searchForFile(Video, Tessaly);
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
        QCOMPARE(searching.size(), 1);
        QVERIFY(m_view->controller->isSearching());
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void fileSearchWithoutRequestKeepsTheStoredOne()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->controller->searchForFile(Video, std::nullopt);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void unhashableFileIsSearchedByItsFullName()
    {
        m_view->service->hash.reset();
        m_view->controller->searchForFile(Video, std::nullopt);
        QVERIFY(m_view->service->queries.isEmpty()); // only on the next turn
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Failed to create a file hash for the url"_s});
        m_view->turn();
        QVERIFY(m_view->service->queries.last() == textArgs(u"Some.Film.2019.mkv"_s));
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    }

    void nulInANameIsNoPartOfTheSearch()
    {
        m_view->service->hash.reset();
        m_view->controller->searchForFile(QUrl(u"file:///videos/Some%00Film.mkv"_s), std::nullopt);
        m_view->turn();
        QCOMPARE(m_view->field()->text(), u"SomeFilm.mkv"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"SomeFilm.mkv"_s));
    }

    void unhashableFileLeavesStateAndDropsItsRequest()
    {
        m_view->service->hash.reset();
        m_view->controller->searchForFile(Video, Tessaly);
        QVERIFY(!m_view->controller->isSearching());
        m_view->turn();
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
        // No file is kept either: a language change repeats the words.
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"Some.Film.2019.mkv"_s, u"fre"_s));
    }

    void foundFilesShowTheCountAndTheList()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->service->finishLast(answerWith(2));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
        QVERIFY(m_view->widget("scrollView")->isVisible());
        QVERIFY(!m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->service->queries.size(), 1);
    }

    void emptyFileSearchFallsBackToWordsOfTheName()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QCOMPARE(m_view->field()->text(), u"words from name"_s);
        QCOMPARE(m_view->service->queries.size(), 2);
        QVERIFY(m_view->service->queries.last() == textArgs(u"words from name"_s));
        QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
    }

    void fallbackRunsWithTheFlagSetBack()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        QSignalSpy changes(m_view->controller.get(), &MainViewController::isSearchingChanged);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QCOMPARE(changes.size(), 1); // the fallback starts while it is still set
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isVisible());
        m_view->service->finishLast(answerWith(1));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (1 subtitles found)"_s);
    }

    void viewStaysAsItWasUntilTheFallbackIsAnswered()
    {
        m_view->showResults(3);
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QVERIFY(m_view->widget("scrollView")->isVisible());
        QVERIFY(!m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QVERIFY(!m_view->widget("scrollView")->isVisible());
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
    }

    void dropOnTheResultsIsSearchedForToo()
    {
        m_view->showResults(3);
        QWidget *rows = m_view->table()->viewport();
        QMimeData file;
        file.setUrls({Video});
        QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(rows, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(rows, &drop);
        QCOMPARE(m_view->service->hashed, QList<QUrl>{Video});
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    }

    void downloadButtonNamesTheDelivery()
    {
        m_view->controller->searchForText(u"a"_s, Tessaly);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    }

    void requesterNameIsNoMnemonic()
    {
        m_view->controller->searchForText(u"a"_s, ExternalRequestInfo{u"x"_s, u"1"_s, u"A&B"_s});
        QCOMPARE(m_view->downloadButton()->text(), u"Send to A&&B"_s);
    }

    void laterRequestTakesThePlaceOfTheStoredOne()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->controller->searchForFile(Video, ExternalRequestInfo{u"glimmet"_s, u"7"_s, u"Glimmet"_s});
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Glimmet"_s);
    }

    void stateIsSetBeforeTheServiceIsAsked()
    {
        const auto looking = std::make_shared<LookingService>();
        looking->controller = m_view->controller.get();
        looking->button = m_view->downloadButton();
        SubtitleService::setShared(looking);
        m_view->controller->searchForFile(Video, Tessaly);
        QVERIFY(looking->wasSearching);
        QCOMPARE(looking->title, u"Send to Tessaly"_s);
        m_view->controller->cancelQuery(nullptr);
        looking->wasSearching = false;
        m_view->controller->searchForText(u"words"_s, Tessaly);
        QVERIFY(looking->wasSearching);
        QCOMPARE(looking->title, u"Send to Tessaly"_s);
    }

    void answerOnTheMainThreadWaitsForItsTurn()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->service->finishLast(answerWith(2), AnswerOn::MainThread);
        QCOMPARE(m_view->title(), QString());
        QVERIFY(m_view->controller->isSearching());
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
        QVERIFY(!m_view->controller->isSearching());
    }

    void parkedRequestIsServedOnceWhenTheViewLoads_data()
    {
        QTest::addColumn<bool>("hasHash");
        QTest::addColumn<QString>("title");
        QTest::newRow("video") << true << u"Send to Tessaly"_s;
        QTest::newRow("file without a hash") << false << u"Download"_s;
    }
    void parkedRequestIsServedOnceWhenTheViewLoads()
    {
        QFETCH(bool, hasHash);
        QFETCH(QString, title);
        std::optional<ExternalRequest> parked = ExternalRequest{Video, Tessaly};
        if (!hasHash)
            m_view->service->hash.reset();
        const auto controller = ViewController::make<MainViewController>();
        controller->setPendingRequest(&parked);
        const QWidget *view = controller->view();
        QVERIFY(!parked);
        m_view->turn();
        QCOMPARE(m_view->service->hashed, QList<QUrl>{Video});
        QCOMPARE(m_view->service->queries.size(), 1);
        QCOMPARE(view->findChild<QPushButton *>(u"downloadButton"_s)->text(), title);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(FileSearchTest)
#include "FileSearchTest.moc"
