#include <model/ImdbNumber.h>
#include <tests/support/TestMain.h>

#include <QTest>

class ImdbNumberTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idsAreRead_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<qint64>("number"); // 0 for none
        const auto row = [](const char *id, qint64 number) {
            QTest::newRow(id) << QString::fromLatin1(id) << number;
        };
        row("tt990019001", 990019001);
        row("990019001", 990019001);
        row(" TT0012345 ", 12345);
        row("0012345", 12345);
        row("https://www.imdb.com/title/tt990019001/?ref=x", 990019001);
        row("https://www.imdb.com/de/title/tt990019001", 990019001);
        row("nm0012345", 0);
        row("tt", 0);
        row("tt0000000", 0);
        row("tt9900190011", 0);
        row("12x", 0);
        row("-5", 0);
        row("", 0);
    }

    void idsAreRead()
    {
        QFETCH(QString, id);
        QFETCH(qint64, number);
        QCOMPARE(imdbNumber(id).value_or(0), number);
    }

    void hugeTextIsNoId()
    {
        QVERIFY(!imdbNumber(QStringLiteral("0").repeated(1'000'000) + QStringLiteral("5")));
    }

    void idIsWrittenWithSevenDigits()
    {
        QCOMPARE(imdbId(12345), QStringLiteral("tt0012345"));
        QCOMPARE(imdbId(990019001), QStringLiteral("tt990019001"));
    }
};

PLOVENDIX_TEST(ImdbNumberTest)
#include "ImdbNumberTest.moc"
