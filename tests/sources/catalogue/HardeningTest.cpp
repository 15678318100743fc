#include <sources/catalogue/Hardening.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QTest>

namespace
{
QByteArray repeated(const QByteArray &text, int times, const QByteArray &between = ", ")
{
    return QByteArrayList(times, text).join(between);
}
} // namespace

/// Whatever a file's own statements might use against its reader works on any connection, and on a hardened
/// one no more.
class HardeningTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

    static void spy(sqlite3_context *context, int, sqlite3_value **) { sqlite3_result_int(context, 1); }

    /// A writable database, so that only the hardening stands in the way.
    static std::unique_ptr<SQLite::Database> database()
    {
        auto made = std::make_unique<SQLite::Database>(":memory:", SQLite::OPEN_READWRITE);
        sqlite3_create_function(made->getHandle(), "spy", 0, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, spy,
                                nullptr, nullptr);
        made->exec("CREATE TABLE plain(a); INSERT INTO plain VALUES(1);"
                   "CREATE VIEW seen AS SELECT a FROM plain;"
                   "CREATE TABLE computed(a, b AS (spy())); INSERT INTO computed VALUES(1)");
        return made;
    }

    static bool runs(SQLite::Database &database, const QByteArray &text)
    {
        try {
            SQLite::Statement statement(database, text.constData());
            while (statement.executeStep())
                static_cast<void>(statement.getColumn(0).getInt());
            return true;
        } catch (const SQLite::Exception &) {
            return false;
        }
    }

private Q_SLOTS:
    void statementRunsNoMore_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("view") << QByteArray("SELECT a FROM seen");
        QTest::newRow("function that a table names") << QByteArray("SELECT b FROM computed");
        QTest::newRow("write") << QByteArray("INSERT INTO plain VALUES(2)");
        QTest::newRow("other file") << QByteArray("ATTACH ':memory:' AS other");
        QTest::newRow("large value") << QByteArray("SELECT zeroblob(16777217)");
        QTest::newRow("long statement") << QByteArray("SELECT 1 /*" + QByteArray(100'000, ' ') + "*/");
        QTest::newRow("many columns") << QByteArray("SELECT " + repeated("1", 101));
        QTest::newRow("deep expression") << QByteArray("SELECT " + repeated("a", 102, " + ") + " FROM plain");
        QTest::newRow("many parts") << QByteArray(repeated("SELECT a FROM plain", 6, " UNION "));
        QTest::newRow("many operations")
            << QByteArray("SELECT * FROM (VALUES " + repeated("(1)", 15'000) + ")");
        QTest::newRow("many arguments") << QByteArray("SELECT max(" + repeated("1", 9) + ")");
        QTest::newRow("long pattern") << QByteArray("SELECT 'a' LIKE '" + QByteArray(101, '%') + "'");
        QTest::newRow("many variables") << QByteArray("SELECT ?101");
    }

    void statementRunsNoMore()
    {
        QFETCH(const QByteArray, text);
        const auto soft = database();
        QVERIFY(runs(*soft, text));
        const auto hard = database();
        harden(*hard);
        QVERIFY(!runs(*hard, text));
        QVERIFY(runs(*hard, "SELECT a FROM plain"));
    }

    void triggerDoesNotRun()
    {
        const auto hard = database();
        hard->exec("CREATE TRIGGER odd AFTER INSERT ON plain BEGIN DELETE FROM computed; END");
        harden(*hard);
        hard->exec("PRAGMA query_only = OFF");
        hard->exec("INSERT INTO plain VALUES(2)");
        QCOMPARE(hard->execAndGet("SELECT count(*) FROM computed").getInt(), 1);
    }

    void schemaCannotBeRewritten()
    {
        const QByteArray text = "DELETE FROM sqlite_schema WHERE name = 'computed'";
        const auto soft = database();
        soft->exec("PRAGMA writable_schema = ON");
        QVERIFY(runs(*soft, text));
        const auto hard = database();
        harden(*hard);
        hard->exec("PRAGMA query_only = OFF; PRAGMA writable_schema = ON");
        QVERIFY(!runs(*hard, text));
    }

    void sizesWithinAPageAreChecked()
    {
        const auto hard = database();
        QCOMPARE(hard->execAndGet("PRAGMA cell_size_check").getInt(), 0);
        harden(*hard);
        QCOMPARE(hard->execAndGet("PRAGMA cell_size_check").getInt(), 1);
    }
};

PLOVENDIX_TEST(HardeningTest)
#include "HardeningTest.moc"
