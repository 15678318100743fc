#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;

class FileSearchTest final : public MainViewTest
{
    Q_OBJECT

private:
    QString delivery() const { return m_view->downloadButton()->text(); }

private Q_SLOTS:
    void startsIdle()
    {
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(!m_view->controller->isDownloading());
        QVERIFY(m_view->cancelButton()->isHidden());
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QVERIFY(!m_view->widget("scrollView")->isVisible());
        QCOMPARE(delivery(), u"Download"_s);
    }

    void asksForSizeHashAndLanguageInThatOrder()
    {
        m_view->service->hash = VideoHash{u"0123456789abcdef"_s, std::numeric_limits<quint64>::max()};
        m_view->searchFile();
        const QList<Arg> expected = {{Param::byteSize, u"18446744073709551615"_s},
                                     {Param::movieHash, u"0123456789abcdef"_s},
                                     {Param::language, u"eng"_s}};
        QCOMPARE(m_view->service->queries.size(), 1);
        QVERIFY(m_view->service->queries.first() == expected);
        QCOMPARE(static_cast<int>(Param::byteSize), 2);
        QCOMPARE(static_cast<int>(Param::movieHash), 3);
        QCOMPARE(static_cast<int>(Param::text), 4);
        QCOMPARE(static_cast<int>(Param::language), 6);
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    }

    void stateIsSetBeforeTheServiceIsAsked()
    {
        const QSignalSpy searching(m_view->controller.get(), &MainViewController::isSearchingChanged);
        QStringList seen;
        m_view->service->answer = [&](const QList<Arg> &) {
            seen += delivery() + (m_view->controller->isSearching() ? u", searching"_s : u", idle"_s);
            return answerWith(1);
        };
        m_view->searchFile(tessaly());
        m_view->turn();
        m_view->controller->cancelQuery(nullptr);
        m_view->controller->searchForText(u"words"_s, tessaly());
        QCOMPARE(seen, QStringList(2, u"Send to Tessaly, searching"_s));
        QCOMPARE(searching.size(), 3);
    }

    void downloadButtonNamesTheDelivery()
    {
        m_view->searchFile(tessaly());
        QCOMPARE(delivery(), u"Send to Tessaly"_s);
        m_view->searchFile(); // keeps the stored request
        QCOMPARE(delivery(), u"Send to Tessaly"_s);
        m_view->searchFile(ExternalRequestInfo{u"x"_s, u"1"_s, u"A&B"_s});
        QCOMPARE(delivery(), u"Send to A&&B"_s); // no mnemonic
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(delivery(), u"Download"_s);
    }

    void unhashableFileIsSearchedByItsFullName_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QString>("name");
        QTest::newRow("file") << QUrl(u"file:///videos/Some.Film.mkv"_s) << u"Some.Film.mkv"_s;
        QTest::newRow("NUL") << QUrl(u"file:///videos/Some%00Film.mkv"_s) << u"SomeFilm.mkv"_s;
    }
    void unhashableFileIsSearchedByItsFullName()
    {
        QFETCH(QUrl, url);
        QFETCH(QString, name);
        m_view->service->hash.reset();
        m_view->controller->searchForFile(url, tessaly());
        QVERIFY(m_view->service->queries.isEmpty()); // only on the next turn
        QVERIFY(!m_view->controller->isSearching());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Failed to create a file hash for the url"_s});
        QCOMPARE(m_view->field()->text(), name);
        m_view->turn();
        QVERIFY(m_view->service->queries.last() == textArgs(name));
        QCOMPARE(delivery(), u"Download"_s);
        // No file is kept either: a language change repeats the words.
        setLanguage(u"fr"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(name, u"fre"_s));
    }

    void unhashableFileLeavesARunningSearchAsItWas()
    {
        m_view->searchFile(tessaly());
        const QSignalSpy searching(m_view->controller.get(), &MainViewController::isSearchingChanged);
        const auto hash = std::exchange(m_view->service->hash, std::nullopt);
        m_view->controller->searchForFile(QUrl(u"file:///videos/notes.txt"_s),
                                          ExternalRequestInfo{u"glimmet"_s, u"7"_s, u"Glimmet"_s});
        m_view->turn();
        QVERIFY(m_view->service->queries.last() == textArgs(u"notes.txt"_s));
        QVERIFY(searching.isEmpty());
        QCOMPARE(delivery(), u"Send to Tessaly"_s);
        // The file is the one before, too.
        m_view->service->hash = hash;
        m_view->service->hashed.clear();
        setLanguage(u"de"_s);
        QCOMPARE(m_view->service->hashed, QList<QUrl>{m_view->video});
        QCOMPARE(delivery(), u"Send to Tessaly"_s);
    }

    void foundFilesShowTheCountAndTheList()
    {
        m_view->searchFile();
        m_view->service->finishLast(answerWith(2), AnswerOn::MainThread);
        QCOMPARE(m_view->title(), QString()); // waits for its turn
        QVERIFY(m_view->controller->isSearching());
        m_view->turn();
        QVERIFY(!m_view->controller->isSearching());
        QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
        QVERIFY(m_view->widget("scrollView")->isVisible());
        QVERIFY(!m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->service->queries.size(), 1);
    }

    void emptyFileSearchFallsBackToWordsOfTheName()
    {
        m_view->showResults(3);
        m_view->searchFile(tessaly());
        const QSignalSpy changes(m_view->controller.get(), &MainViewController::isSearchingChanged);
        m_view->answer(0);
        QCOMPARE(m_view->field()->text(), u"words from name"_s);
        QCOMPARE(m_view->service->queries.size(), 3);
        QVERIFY(m_view->service->queries.last() == textArgs(u"words from name"_s));
        QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
        QCOMPARE(changes.size(), 1); // the fallback starts while it is still set
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isVisible());
        // The list stays, without its rows, until the words are answered.
        QVERIFY(m_view->widget("scrollView")->isVisible());
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        m_view->answer(0);
        QVERIFY(!m_view->widget("scrollView")->isVisible());
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->service->queries.size(), 3);
        // File and request are those of the search for the file.
        QCOMPARE(delivery(), u"Send to Tessaly"_s);
        setLanguage(u"de"_s);
        QCOMPARE(m_view->service->hashed, QList<QUrl>({m_view->video, m_view->video}));
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
        std::optional<ExternalRequest> parked = ExternalRequest{m_view->video, tessaly()};
        if (!hasHash)
            m_view->service->hash.reset();
        const auto controller = ViewController::make<MainViewController>();
        controller->setPendingRequest(&parked);
        const QWidget *view = controller->view();
        QVERIFY(!parked);
        m_view->turn();
        QCOMPARE(m_view->service->hashed, QList<QUrl>{m_view->video});
        QCOMPARE(m_view->service->queries.size(), 1);
        QCOMPARE(view->findChild<QPushButton *>(u"downloadButton"_s)->text(), title);
    }
};

PLOVENDIX_GUI_TEST(FileSearchTest)
#include "FileSearchTest.moc"
