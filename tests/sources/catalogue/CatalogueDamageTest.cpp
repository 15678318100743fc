#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueDatabase.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <random>
#include <sqlite3.h>
#include <tests/support/TestMain.h>
#include <sys/stat.h>

namespace
{
const QString Hash = QStringLiteral("00112233445566ff");
constexpr quint64 Size = 4096;
} // namespace

/// Files that are no catalogue, or not any more: every search gives rows or an error with a sentence.
class CatalogueDamageTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueErrors m_errors;
    QString m_path;
    QByteArray m_whole;

    void replace(const QByteArray &content) const
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    void execute(const char *statements) const
    {
        sqlite3 *handle = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(m_path).constData(), &handle), SQLITE_OK);
        sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
        QCOMPARE(sqlite3_exec(handle, statements, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(handle);
    }

    /// The first failure of opening the file and searching it in every way; nothing when all went well.
    std::optional<base::Error> failure() const
    {
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        if (!database)
            return database.error();
        const auto byText = database->entriesForText(QStringLiteral("harbour lights"), QStringLiteral("eng"));
        const auto byVideo = database->entriesForVideo(Size, Hash, QStringLiteral("eng"));
        const auto file = database->file(1);
        const auto film = database->filmByImdb(990019001);
        const auto poster = database->poster(1);
        if (!byText)
            return byText.error();
        if (!byVideo)
            return byVideo.error();
        if (!file)
            return file.error();
        if (!film)
            return film.error();
        return poster ? std::nullopt : std::optional(poster.error());
    }

    void expectFailure(CatalogueFailure kind) const
    {
        const std::optional<base::Error> error = failure();
        QVERIFY(error);
        QCOMPARE(error->domain, QStringLiteral("Catalogue"));
        QCOMPARE(error->code, static_cast<int>(kind));
        QVERIFY(error->localizedDescription.contains(m_path));
    }

private Q_SLOTS:
    void initTestCase()
    {
        CatalogueFixture fixture(m_sandbox, QStringLiteral("damaged.sqlite"));
        for (int i = 0; i < 50; ++i) {
            fixture.film({QStringLiteral("Harbour Lights %1").arg(i)}, 2019)
                .withImdb(990019001 + i)
                .withPoster(QByteArray(2000, 'p'))
                .subtitle(QStringLiteral("Lights.%1").arg(i), i, "eng",
                          QByteArray(3000, 'a') + QByteArray::number(i))
                .madeFor(Hash, Size);
        }
        fixture.write();
        m_path = fixture.path();
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_whole = file.readAll();
    }

    void init() { replace(m_whole); }

    void wholeFileIsFine() { QVERIFY(!failure()); }

    void missingFile()
    {
        QVERIFY(QFile::remove(m_path));
        expectFailure(CatalogueFailure::Missing);
    }

    void emptyFile()
    {
        replace(QByteArray());
        expectFailure(CatalogueFailure::OtherVersion);
    }

    void foreignFile()
    {
        replace(QByteArray(20000, 'x'));
        expectFailure(CatalogueFailure::Damaged);
    }

    void otherVersion()
    {
        for (const char *statement : {"PRAGMA user_version = 99", "PRAGMA user_version = 1"}) {
            execute(statement);
            expectFailure(CatalogueFailure::OtherVersion);
        }
    }

    void databaseOfAnotherProgram()
    {
        execute("PRAGMA application_id = 7");
        expectFailure(CatalogueFailure::OtherVersion);
    }

    void missingTable_data()
    {
        QTest::addColumn<QByteArray>("table");
        for (const char *table : {"film", "title", "film_title", "title_words", "subtitle", "video"})
            QTest::newRow(table) << QByteArray(table);
    }

    void missingTable()
    {
        QFETCH(QByteArray, table);
        execute("DROP TABLE " + table);
        expectFailure(CatalogueFailure::Damaged);
    }

    void missingColumn()
    {
        execute("ALTER TABLE subtitle RENAME COLUMN release TO other");
        expectFailure(CatalogueFailure::Damaged);
    }

    void tableOfOtherMakeIsRefusedAtOnce_data()
    {
        QTest::addColumn<QByteArray>("statements");
        QTest::newRow("view") << QByteArray("ALTER TABLE title RENAME TO t2; CREATE VIEW title AS"
                                            " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i FROM n)"
                                            " SELECT i AS id, '' AS name FROM n");
        QTest::newRow("computed column")
            << QByteArray("ALTER TABLE film ADD COLUMN extra AS (instr(hex(poster), hex(poster)))");
        QTest::newRow("text index in place of a table") << QByteArray(
            "DROP TABLE subtitle; CREATE VIRTUAL TABLE subtitle USING fts5(id, film_id, language,"
            " release, format, downloads, frames_per_second, hearing_impaired,"
            " foreign_parts_only, machine_translated, digest, content)");
        QTest::newRow("table in place of the text index")
            << QByteArray("DROP TABLE title_words; CREATE TABLE title_words(words, rank)");
        QTest::newRow("text index over another table")
            << QByteArray("DROP TABLE title_words;"
                          "CREATE VIRTUAL TABLE title_words USING fts5(name, content='title')");
        QTest::newRow("computed column behind the text index")
            << QByteArray("ALTER TABLE title_words_idx ADD COLUMN extra AS (hex(pgno))");
        QTest::newRow("view behind the text index")
            << QByteArray("DROP TABLE title_words_docsize;"
                          "CREATE VIEW title_words_docsize AS SELECT 1 AS id, 2 AS sz");
        QTest::newRow("no table of contents") << QByteArray("DROP TABLE content");
    }

    void tableOfOtherMakeIsRefusedAtOnce()
    {
        QFETCH(const QByteArray, statements);
        execute(statements);
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(!database);
        QCOMPARE(database.error().code, static_cast<int>(CatalogueFailure::Damaged));
        QVERIFY2(database.error().detail.contains(QStringLiteral("is not as Plovendix makes it")),
                 qPrintable(database.error().detail));
    }

    void cutFile()
    {
        replace(m_whole.left(m_whole.size() / 2));
        expectFailure(CatalogueFailure::Damaged);
    }

    void cutAnywhereGivesRowsOrAnError()
    {
        for (qsizetype size = 0; size < m_whole.size(); size += 3571) {
            replace(m_whole.left(size));
            const std::optional<base::Error> error = failure();
            QVERIFY(!error || !error->localizedDescription.isEmpty());
        }
    }

    void overwrittenBytesGiveRowsOrAnError()
    {
        std::mt19937 random(7); // the same bytes every time
        for (int round = 0; round < 60; ++round) {
            QByteArray content = m_whole;
            for (int i = 0; i < 40; ++i)
                content[qsizetype(random() % quint32(content.size()))] = static_cast<char>(random());
            replace(content);
            const std::optional<base::Error> error = failure();
            QVERIFY(!error || !error->localizedDescription.isEmpty());
        }
    }

    void folderInPlaceOfTheFile()
    {
        QVERIFY(QFile::remove(m_path));
        QVERIFY(QDir().mkdir(m_path));
        expectFailure(CatalogueFailure::Unreadable);
        QVERIFY(QDir().rmdir(m_path));
    }

    void pipeInPlaceOfTheFile()
    {
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        expectFailure(CatalogueFailure::Unreadable);
        QVERIFY(QFile::remove(m_path));
    }

    void valuesOfWrongTypesAndSizesAreMadeHarmless()
    {
        execute("UPDATE subtitle SET downloads = 'many', frames_per_second = 1e300, format = '../sh',"
                " release = replace(printf('%.5000c', 'x'), 'xx', 'x' || char(10)) WHERE id = 1;"
                "UPDATE film SET year = -5, imdb = 'tt', season = 1e18, episode = x'00' WHERE id = 1;"
                "UPDATE subtitle SET digest = zeroblob(100000) WHERE id = 1");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(database);
        const auto entries =
            database->entriesForText(QStringLiteral("harbour lights 0"), QStringLiteral("eng"));
        QVERIFY(entries && entries->size() == 1);
        const Subtitle &subtitle = entries->first().subtitle;
        QVERIFY(!subtitle.downloads && !subtitle.framesPerSecond && !subtitle.year && !subtitle.season);
        QVERIFY(!subtitle.episode && !subtitle.imdbID);
        QCOMPARE(subtitle.subFormat, QStringLiteral("sh"));
        QVERIFY(subtitle.subFileName.size() <= 300 && !subtitle.subFileName.contains(QLatin1Char('\n')));
        QVERIFY(entries->first().digest.size() <= 64);
    }

    void contentOverTheLimitIsNotRead()
    {
        execute("UPDATE subtitle SET content = zeroblob(9000000) WHERE id = 1; UPDATE film SET poster = "
                "zeroblob(6000000)");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(database);
        const auto file = database->file(1);
        QVERIFY(file && *file);
        QVERIFY((*file)->content.isEmpty());
        const auto poster = database->poster(1);
        QVERIFY(poster && poster->isEmpty());
    }

    void schemaTriggersAndOddSqlDoNotRun()
    {
        execute("CREATE VIRTUAL TABLE extra USING fts5(a);"
                "CREATE TRIGGER odd AFTER INSERT ON title BEGIN DELETE FROM subtitle; END");
        QVERIFY(!failure());
    }
};

PLOVENDIX_TEST(CatalogueDamageTest)
#include "CatalogueDamageTest.moc"
