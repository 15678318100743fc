#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueDatabase.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>

#include <filesystem>
#include <random>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Files that are no catalogue, or not any more: every search gives rows or an error with a sentence.
class CatalogueDamageTest : public QObject
{
    Q_OBJECT

    using Change = std::function<void()>;

    Sandbox m_sandbox;
    CatalogueErrors m_errors;
    const QString m_path = m_sandbox.path(u"damaged.sqlite"_s);
    QByteArray m_whole;

    void replace(const QByteArray &content) const
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    Change forged(const QByteArray &statements) const
    {
        return [this, statements] { CatalogueFixture::forge(m_path, statements); };
    }

    /// The first failure of opening the file and searching it in every way; nothing when all went well.
    std::optional<base::Error> failure() const
    {
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        if (!database)
            return database.error();
        std::optional<base::Error> first;
        const auto look = [&](const auto &result) {
            if (!first && !result)
                first = result.error();
        };
        look(database->entriesForText(u"harbour lights"_s, u"eng"_s));
        look(database->entriesForVideo(Size, Hash, u"eng"_s));
        look(database->file(1));
        look(database->filmByImdb(990019001));
        look(database->poster(1));
        return first;
    }

private Q_SLOTS:
    void initTestCase()
    {
        CatalogueFixture fixture(m_sandbox, u"damaged.sqlite"_s);
        for (int i = 0; i < 50; ++i) {
            fixture.film({u"Harbour Lights %1"_s.arg(i)}, 2019)
                .withImdb(990019001 + i)
                .withPoster(QByteArray(2000, 'p'))
                .subtitle(u"Lights.%1"_s.arg(i), i, "eng", QByteArray(3000, 'a') + QByteArray::number(i))
                .madeFor(Hash, Size);
        }
        fixture.write();
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_whole = file.readAll();
    }

    void init()
    {
        std::filesystem::remove_all(m_path.toStdString());
        replace(m_whole);
    }

    void wholeFileIsFine() { QVERIFY(!failure()); }

    void fileIsAnError_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<CatalogueFailure>("kind");
        const auto row = [](const char *label, CatalogueFailure kind, const Change &change) {
            QTest::newRow(label) << change << kind;
        };
        using enum CatalogueFailure;
        row("missing", Missing, [this] { QVERIFY(QFile::remove(m_path)); });
        row("folder", Unreadable, [this] { QVERIFY(QFile::remove(m_path) && QDir().mkdir(m_path)); });
        row("pipe", Unreadable, [this] {
            QVERIFY(QFile::remove(m_path));
            QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        });
        row("empty", OtherVersion, [this] { replace({}); });
        row("no database", Damaged, [this] { replace(QByteArray(20000, 'x')); });
        row("cut", Damaged, [this] { replace(m_whole.left(m_whole.size() / 2)); });
        row("later version", OtherVersion, forged("PRAGMA user_version = 99"));
        row("earlier version", OtherVersion, forged("PRAGMA user_version = 1"));
        row("another program's", OtherVersion, forged("PRAGMA application_id = 7"));
        row("missing column", Damaged, forged("ALTER TABLE subtitle RENAME COLUMN release TO other"));
        for (const char *table : {"film", "title", "film_title", "title_words", "subtitle", "video"})
            row(table, Damaged, forged(QByteArray("DROP TABLE ") + table));
    }
    void fileIsAnError()
    {
        QFETCH(const Change, change);
        QFETCH(const CatalogueFailure, kind);
        change();
        const std::optional<base::Error> error = failure();
        QVERIFY(error);
        QCOMPARE(error->domain, u"Catalogue"_s);
        QCOMPARE(error->code, static_cast<int>(kind));
        QVERIFY(error->localizedDescription.contains(m_path));
    }

    void tableOfOtherMakeIsRefusedAtOnce_data()
    {
        QTest::addColumn<QByteArray>("statements");
        QTest::addColumn<QString>("table");
        QTest::newRow("view") << QByteArray("ALTER TABLE title RENAME TO t2; CREATE VIEW title AS"
                                            " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i FROM n)"
                                            " SELECT i AS id, '' AS name FROM n")
                              << u"title"_s;
        QTest::newRow("computed column")
            << QByteArray("ALTER TABLE film ADD COLUMN extra AS (instr(hex(poster), hex(poster)))")
            << u"film"_s;
        QTest::newRow("text index in place of a table")
            << QByteArray(
                   "DROP TABLE subtitle; CREATE VIRTUAL TABLE subtitle USING fts5(id, film_id, language,"
                   " release, format, downloads, frames_per_second, hearing_impaired,"
                   " foreign_parts_only, machine_translated, digest, content)")
            << u"subtitle"_s;
        QTest::newRow("table in place of the text index")
            << QByteArray("DROP TABLE title_words; CREATE TABLE title_words(words, rank)")
            << u"title_words"_s;
        QTest::newRow("text index over another table")
            << QByteArray("DROP TABLE title_words;"
                          "CREATE VIRTUAL TABLE title_words USING fts5(name, content='title')")
            << u"title_words"_s;
        QTest::newRow("computed column behind the text index")
            << QByteArray("ALTER TABLE title_words_idx ADD COLUMN extra AS (hex(pgno))")
            << u"title_words_idx"_s;
        QTest::newRow("view behind the text index")
            << QByteArray("DROP TABLE title_words_docsize;"
                          "CREATE VIEW title_words_docsize AS SELECT 1 AS id, 2 AS sz")
            << u"title_words_docsize"_s;
        QTest::newRow("no table of contents") << QByteArray("DROP TABLE content") << u"content"_s;
    }
    void tableOfOtherMakeIsRefusedAtOnce()
    {
        QFETCH(const QByteArray, statements);
        QFETCH(const QString, table);
        CatalogueFixture::forge(m_path, statements);
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(!database);
        QCOMPARE(database.error().code, static_cast<int>(CatalogueFailure::Damaged));
        const QString sentence = u"the table %1 is not one that Plovendix makes"_s.arg(table);
        QVERIFY2(database.error().detail.contains(sentence), qPrintable(database.error().detail));
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

    void valuesOfWrongTypesAndSizesAreMadeHarmless()
    {
        CatalogueFixture::forge(
            m_path, "UPDATE subtitle SET downloads = 'many', frames_per_second = 1e300, format = '../sh',"
                    " release = replace(printf('%.5000c', 'x'), 'xx', 'x' || char(10)) WHERE id = 1;"
                    "UPDATE film SET year = -5, imdb = 'tt', season = 1e18, episode = x'00' WHERE id = 1;"
                    "UPDATE subtitle SET digest = zeroblob(100000) WHERE id = 1");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(database);
        const auto entries = database->entriesForText(u"harbour lights 0"_s, u"eng"_s);
        QVERIFY(entries && entries->size() == 1);
        const Subtitle &subtitle = entries->first().subtitle;
        QVERIFY(!subtitle.downloads && !subtitle.framesPerSecond && !subtitle.year && !subtitle.season);
        QVERIFY(!subtitle.episode && !subtitle.imdbID);
        QCOMPARE(subtitle.subFormat, u"sh"_s);
        QVERIFY(subtitle.subFileName.size() <= 300 && !subtitle.subFileName.contains(u'\n'));
        QVERIFY(entries->first().digest.size() <= 64);
    }

    void contentOverTheLimitIsNotRead_data()
    {
        QTest::addColumn<QByteArray>("statements");
        QTest::newRow("plain") << QByteArray("UPDATE subtitle SET content = zeroblob(9000000) WHERE id = 1");
        // The first four bytes state the unpacked size.
        const auto packed = [](const char *label, const QByteArray &bytes) {
            QTest::newRow(label) << "UPDATE subtitle SET content = x'' WHERE id = 1;"
                                    "INSERT INTO content(subtitle_id, packed) VALUES(1, x'" +
                                        bytes.toHex() + "')";
        };
        packed("packed", qCompress(QByteArray(9'000'000, '\0')));
        packed("packed and stated too large", QByteArray::fromHex("00900000") + qCompress("short").mid(4));
        packed("packed badly", QByteArray::fromHex("00000004ffffffff"));
        packed("packed without a size", QByteArray(2, '\0'));
    }
    void contentOverTheLimitIsNotRead()
    {
        QFETCH(const QByteArray, statements);
        CatalogueFixture::forge(m_path,
                                statements + "; UPDATE film SET poster = zeroblob(6000000) WHERE id = 1");
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, m_errors);
        QVERIFY(database);
        const auto file = database->file(1);
        QVERIFY(file && *file);
        QVERIFY((*file)->content.isEmpty());
        const auto poster = database->poster(1);
        QVERIFY(poster && poster->isEmpty());
    }

    void additionsOfOthersAreIgnored()
    {
        CatalogueFixture::forge(m_path, "CREATE VIRTUAL TABLE extra USING fts5(a);"
                                        "CREATE TRIGGER odd AFTER INSERT ON title"
                                        " BEGIN DELETE FROM subtitle; END");
        QVERIFY(!failure());
    }
};

PLOVENDIX_TEST(CatalogueDamageTest)
#include "CatalogueDamageTest.moc"
