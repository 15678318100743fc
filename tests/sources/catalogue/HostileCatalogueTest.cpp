#include "CatalogueClient.h"

#include <base/TerminalText.h>
#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/TestMain.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Catalogues made to keep whoever reads them busy: a search ends all the same, and soon when it is not
/// wanted any more.
class HostileCatalogueTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueErrors m_errors;
    QString m_path;

    static void execute(const QString &path, const char *statements)
    {
        sqlite3 *handle = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(path).constData(), &handle), SQLITE_OK);
        sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
        char *message = nullptr;
        QVERIFY2(sqlite3_exec(handle, statements, nullptr, nullptr, &message) == SQLITE_OK, message);
        sqlite3_close(handle);
    }

    /// A hundred thousand subtitles of a film whose name is looked for, each time anew, among as many that
    /// are not there: more than a search could do in an hour, in a few megabytes.
    void makeEndless() const
    {
        execute(m_path,
                "UPDATE film_title SET is_main = 0;"
                "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
                " INSERT INTO film_title(title_id, film_id, is_main) SELECT i, 1, 1 FROM n;"
                "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
                " INSERT INTO subtitle(film_id, language, release, format, downloads, digest, content)"
                " SELECT 1, 'eng', 'Lights.' || i, 'srt', i, x'', x'' FROM n");
    }

    std::shared_ptr<CatalogueService> serviceOf(const QString &path) const
    {
        return std::make_shared<CatalogueService>(QList<CataloguePlace>{{path, Presence::Required}},
                                                  DownloadFolder(m_sandbox.path(u"downloads"_s)));
    }

    bool isBeingRead() const
    {
        const QDir descriptors(u"/proc/self/fd"_s);
        for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
            if (QFile::symLinkTarget(descriptors.filePath(name)) == m_path)
                return true;
        }
        return false;
    }

private Q_SLOTS:
    void init()
    {
        CatalogueFixture fixture(m_sandbox, u"hostile.sqlite"_s);
        fixture.film({u"Harbour Lights"_s}, 2019)
            .withImdb(990019001)
            .subtitle(u"Lights.exact"_s, 1)
            .madeFor(Hash, Size);
        fixture.write();
        m_path = fixture.path();
    }

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
        execute(m_path, "PRAGMA writable_schema = ON;"
                        "UPDATE sqlite_schema SET name = 'evil' || char(27) || ']0;owned' || char(7),"
                        " tbl_name = 'evil' || char(27) || ']0;owned' || char(7), sql = 'CREATE nonsense'"
                        " WHERE name = 'film'");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(!database);
        QVERIFY(database.error().detail.contains(u"evil]0;owned"_s));
        QCOMPARE(database.error().detail, terminalText(database.error().detail));
    }

    void detailsOfErrorsAreOnOneLineWithoutControlCharacters()
    {
        const QString detail = u"table evil\x1b]0;owned\x07 is\ngone"_s;
        const base::Error error = m_errors.error(CatalogueFailure::Damaged, m_path, detail);
        QCOMPARE(error.detail, u"table evil]0;owned is gone"_s);
    }

    void namesOfTablesWithoutEndAreNotReadThrough()
    {
        QByteArray statements;
        for (int i = 0; i < 2000; ++i)
            statements += "CREATE TABLE extra_" + QByteArray::number(i) + "(a);";
        execute(m_path, "BEGIN;" + statements + "COMMIT");
        int questions = 0;
        const Result<CatalogueDatabase> database =
            CatalogueDatabase::open(m_path, m_errors, {.isCancelled = [&] { return ++questions > 0; }});
        QVERIFY(!database);
        QCOMPARE(database.error().code, static_cast<int>(CatalogueFailure::TooSlow));
    }

    void serviceThatGoesDoesNotWaitForItsSearch()
    {
        makeEndless();
        auto service = serviceOf(m_path);
        service->query(textQuery(u"harbour lights"_s), [](const Result<QueryResult> &) {});
        QTRY_VERIFY(isBeingRead());
        QTest::failOnWarning(QRegularExpression(u"."_s)); // a search that takes its whole time leaves a line
        service.reset();
        QTRY_VERIFY(!isBeingRead());
    }

    void cancelledSearchMakesRoomForTheNext()
    {
        makeEndless();
        const auto service = serviceOf(m_path);
        service->query(textQuery(u"harbour lights"_s), [](const Result<QueryResult> &) {});
        QTRY_VERIFY(isBeingRead());
        QVERIFY(QFile::remove(m_path));
        init();
        QTest::failOnWarning(QRegularExpression(u"."_s)); // a search that takes its whole time leaves a line
        service->cancelQueryTask();
        QCOMPARE(ask(*service, textQuery(u"harbour lights"_s)), QStringList(u"Lights.exact"_s));
    }

    void filmsWithoutEndAreGivenUpWhenTheServiceGoes()
    {
        execute(m_path, "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 2000000)"
                        " INSERT INTO film(imdb) SELECT 990019001 FROM n");
        const QList<CataloguePlace> places = {{m_path, Presence::Required}};
        auto metadata = std::make_unique<CatalogueMetadata>(places);
        std::optional<Result<FindResult>> answer;
        metadata->findExternally(u"tt990019001"_s, ExternalSource::imdb,
                                 [&](const Result<FindResult> &result) { answer = result; });
        // Looks without a pause: it is being read for half a second only.
        for (const QDeadlineTimer deadline(20s); !isBeingRead();)
            QVERIFY(!deadline.hasExpired());
        metadata.reset();
        QTRY_VERIFY(answer);
        QVERIFY(!*answer); // what was read by then is not all of it
        QCOMPARE(answer->error().code, static_cast<int>(CatalogueFailure::TooSlow));
    }
};

PLOVENDIX_TEST(HostileCatalogueTest)
#include "HostileCatalogueTest.moc"
