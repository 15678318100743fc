#include "CatalogueClient.h"
#include "CatalogueFixture.h"

#include <base/MainQueue.h>
#include <base/TerminalText.h>
#include <media/names/VideoNames.h>
#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QRegularExpression>

#include <semaphore>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
std::counting_semaphore<> opened{0}; // connections of SQLite's in this process

int noteConnection(sqlite3 *, char **, const sqlite3_api_routines *)
{
    opened.release();
    return SQLITE_OK;
}
} // namespace

/// Catalogues made to keep their readers busy: a search ends all the same, and soon when it is not wanted any
/// more.
class HostileCatalogueTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueErrors m_errors;
    const QString m_path = m_sandbox.path(u"hostile.sqlite"_s);
    const QList<CataloguePlace> m_places{{m_path, CataloguePlace::Presence::Required}};

    /// A hundred thousand subtitles of a film whose name is looked for, each time anew, among as many that
    /// are not there: more than a search could do in an hour, in a few megabytes.
    void makeEndless() const
    {
        CatalogueFixture::forge(
            m_path, "UPDATE film_title SET is_main = 0;"
                    "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
                    " INSERT INTO film_title(title_id, film_id, is_main) SELECT i, 1, 1 FROM n;"
                    "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
                    " INSERT INTO subtitle(film_id, language, release, format, downloads, digest, content)"
                    " SELECT 1, 'eng', 'Lights.' || i, 'srt', i, x'', x'' FROM n");
    }
    /// A service whose worker has begun an endless search.
    std::shared_ptr<CatalogueService> busyService() const
    {
        makeEndless();
        const auto service = std::make_shared<CatalogueService>(
            m_places, std::make_shared<VideoNames>(), DownloadFolder(m_sandbox.path(u"downloads"_s)));
        while (opened.try_acquire()) {
        }
        service->query(textQuery(u"harbour lights"_s), [](const Result<QueryResult> &) {});
        MainQueue::shared().runUntilIdle();
        if (!opened.try_acquire_for(20s))
            qFatal("the search does not begin");
        return service;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(sqlite3_auto_extension(reinterpret_cast<void (*)()>(noteConnection)), SQLITE_OK);
    }
    void init()
    {
        CatalogueFixture(m_sandbox, u"hostile.sqlite"_s)
            .film({u"Harbour Lights"_s}, 2019)
            .withImdb(990019001)
            .subtitle(u"Lights.exact"_s, 1)
            .madeFor(Hash, Size)
            .write();
    }
    void cleanupTestCase() { sqlite3_reset_auto_extension(); }

    void searchThatTakesTooLongIsGivenUp()
    {
        makeEndless();
        const Result<CatalogueDatabase> database =
            CatalogueDatabase::open(m_path, m_errors, {.longest = 200ms});
        QVERIFY(database);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"hostile.sqlite: interrupted"_s));
        const auto entries = database->entriesForText(u"harbour lights"_s, u"eng"_s);
        QVERIFY(!entries);
        QCOMPARE(entries.error().code, static_cast<int>(CatalogueFailure::TooSlow));
        QVERIFY(entries.error().localizedDescription.contains(u"took too long"_s));
        QVERIFY(entries.error().localizedDescription.contains(m_path));
    }

    void nextSearchHasTimeOfItsOwn()
    {
        makeEndless();
        const Result<CatalogueDatabase> database =
            CatalogueDatabase::open(m_path, m_errors, {.longest = 1500ms});
        QVERIFY(database);
        QVERIFY(!database->entriesForVideo(Size, Hash, u"eng"_s));
        // Looks at all hundred thousand and takes none, a fraction of the time.
        QVERIFY(database->entriesForVideo(Size, Hash, u"ger"_s));
    }

    void cancelledReadingStopsWithoutALine()
    {
        makeEndless();
        int questions = 0;
        const Result<CatalogueDatabase> database =
            CatalogueDatabase::open(m_path, m_errors, {.isCancelled = [&] { return ++questions > 3; }});
        QVERIFY(database);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        QVERIFY(!database->entriesForVideo(Size, Hash, u"eng"_s));
        QVERIFY(questions > 3);
    }

    void namesFromTheFileCannotSpeakToTheTerminal()
    {
        CatalogueFixture::forge(
            m_path, "PRAGMA writable_schema = ON;"
                    "UPDATE sqlite_schema SET name = 'evil' || char(27) || ']0;owned' || char(7),"
                    " tbl_name = 'evil' || char(27) || ']0;owned' || char(7), sql = 'CREATE nonsense'"
                    " WHERE name = 'film'");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(!database);
        QVERIFY(database.error().detail.contains(u"evil]0;owned"_s));
        QCOMPARE(database.error().detail, terminalText(database.error().detail));
    }

    void namesOfTablesWithoutEndAreNotReadThrough()
    {
        QByteArray statements;
        for (int i = 0; i < 2000; ++i)
            statements += "CREATE TABLE extra_" + QByteArray::number(i) + "(a);";
        CatalogueFixture::forge(m_path, "BEGIN;" + statements + "COMMIT");
        int questions = 0;
        const Result<CatalogueDatabase> database =
            CatalogueDatabase::open(m_path, m_errors, {.isCancelled = [&] { return ++questions > 0; }});
        QVERIFY(!database);
        QCOMPARE(database.error().code, static_cast<int>(CatalogueFailure::TooSlow));
    }

    void serviceThatGoesDoesNotWaitForItsSearch()
    {
        auto service = busyService();
        QTest::failOnWarning(QRegularExpression(u"."_s)); // a search that takes its whole time leaves a line
        service.reset();
    }

    void cancelledSearchMakesRoomForTheNext()
    {
        const auto service = busyService();
        QVERIFY(QFile::remove(m_path));
        init();
        QTest::failOnWarning(QRegularExpression(u"."_s)); // a search that takes its whole time leaves a line
        service->cancelQueryTask();
        QCOMPARE(ask(*service, textQuery(u"harbour lights"_s)), QStringList(u"Lights.exact"_s));
    }

    void filmsWithoutEndAreGivenUpWhenTheServiceGoes()
    {
        CatalogueFixture::forge(
            m_path, "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 2000000)"
                    " INSERT INTO film(imdb) SELECT 990019001 FROM n");
        auto metadata = std::make_unique<CatalogueMetadata>(m_places);
        Caught<FindResult> answer;
        while (opened.try_acquire()) {
        }
        metadata->findExternally(u"tt990019001"_s, ExternalSource::imdb, answer.completion());
        QVERIFY(opened.try_acquire_for(20s));
        metadata.reset();
        // What was read by then is not all of it.
        QCOMPARE(answer.error().code, static_cast<int>(CatalogueFailure::TooSlow));
    }
};

PLOVENDIX_TEST(HostileCatalogueTest)
#include "HostileCatalogueTest.moc"
