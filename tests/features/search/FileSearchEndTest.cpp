#include "DownloadFixture.h"

#include <tests/support/TestMain.h>

#include <QFile>
#include <QFileDialog>
#include <QSignalSpy>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{
const ExternalRequestInfo Glimmet{u"glimmet"_s, u"7"_s, u"Glimmet"_s};
} // namespace

/// What a search for a file keeps, shows and leaves alone until the result of it is in somebody's hands.
class FileSearchEndTest final : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void fallbackToWordsKeepsTheFileToSaveBeside()
    {
        findByWords({});
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(sheet());
        QCOMPARE(sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"a.b.eng.srt"_s);
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos"_s));
        answerSheet(true);
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.eng.srt"_s)));
    }

    void fallbackToWordsKeepsTheRequestToAnswer()
    {
        findByWords(tessaly());
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
        QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
        QVERIFY(m_workspace->opened.first().query().endsWith(u"docid=42"_s));
        QVERIFY(QFile::exists(m_sandbox.path(u"Movies/Plovendix/A.eng.srt"_s)));
    }

    void failureIsShownAsAnAlert()
    {
        m_view->controller->searchForFile(m_video, {});
        m_view->service->finishLast(refusal());
        const QString shown = alertDuring([this] { m_view->turn(); });
        QCOMPARE(shown, refusal().localizedDescription);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: "_s + refusal().localizedDescription});
        QCOMPARE(m_view->service->queries.size(), 1);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void alertComesBeforeTheEndOfTheSearch()
    {
        m_view->controller->searchForFile(m_video, {});
        m_view->service->finishLast(refusal());
        bool wasSearching = false;
        bool couldBeCleared = true;
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); },
                               [&] {
                                   wasSearching = m_view->controller->isSearching();
                                   couldBeCleared = m_view->cancelButton()->isVisible();
                                   dismissAlert();
                               }));
        QVERIFY(wasSearching);
        QVERIFY(!couldBeCleared);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void cancelButtonAppearsAfterTenSeconds()
    {
        m_view->controller->searchForFile(m_video, {});
        m_view->advance(9999ms);
        QVERIFY(m_view->cancelButton()->isHidden());
        m_view->advance(1ms);
        QVERIFY(m_view->cancelButton()->isVisible());
        QVERIFY(m_view->controller->isSearching());
    }

    void unhashableFileLeavesARunningSearchAsItWas()
    {
        m_view->controller->searchForFile(m_video, tessaly());
        QSignalSpy searching(m_view->controller.get(), &MainViewController::isSearchingChanged);
        m_view->service->hash.reset();
        m_view->controller->searchForFile(QUrl(u"file:///videos/notes.txt"_s), Glimmet);
        QVERIFY(m_view->controller->isSearching());
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        QCOMPARE(m_view->service->queries.size(), 1);
        m_view->turn();
        QVERIFY(m_view->service->queries.last() == textArgs(u"notes.txt"_s));
        QVERIFY(searching.isEmpty());
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void unhashableFileLeavesFileAndRequestOfAnEndedSearch()
    {
        const auto hash = m_view->service->hash;
        searchVideo(tessaly());
        m_view->service->hash.reset();
        m_view->controller->searchForFile(QUrl(u"file:///videos/notes.txt"_s), Glimmet);
        QVERIFY(!m_view->controller->isSearching()); // until the next turn
        m_view->turn();
        QVERIFY(m_view->controller->isSearching());
        m_view->service->finishLast(answerWith(1));
        m_view->turn();
        // The file and the request are those of the search before.
        m_view->service->hash = hash;
        m_view->service->hashed.clear();
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_view->service->hashed, QList<QUrl>{m_video});
        m_view->service->finishLast(answerWith(1));
        m_view->turn();
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(!sheet());
        QCOMPARE(m_workspace->opened.size(), 1);
        QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
    }

private:
    /// Searches for the video, which no hash matches; the words of its name find one subtitle.
    void findByWords(const std::optional<ExternalRequestInfo> &request) const
    {
        m_view->controller->searchForFile(m_video, request);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QVERIFY(m_view->service->queries.last() == textArgs(u"words from name"_s));
        m_view->service->finishLast(answerWith(1));
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 1);
    }
};

PLOVENDIX_GUI_TEST(FileSearchEndTest)
#include "FileSearchEndTest.moc"
