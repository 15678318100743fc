#include <tests/support/TestMain.h>
#include <ui/views/Corners.h>

#include <QTest>

class CornersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void membersHaveTheirNumbers()
    {
        QCOMPARE(Corners::topLeft.rawValue, 1);
        QCOMPARE(Corners::bottomLeft.rawValue, 2);
        QCOMPARE(Corners::topRight.rawValue, 4);
        QCOMPARE(Corners::bottomRight.rawValue, 8);
        QCOMPARE(Corners().rawValue, 0);
        static_assert(sizeof(Corners::rawValue) == 8);
    }

    void literalsAreTheUnionOfTheirMembers()
    {
        const Corners diagonal{Corners::topLeft, Corners::bottomRight};
        QCOMPARE(diagonal.rawValue, 9);
        const Corners twice{Corners::topLeft, Corners::topLeft};
        QCOMPARE(twice.rawValue, 1);
        const Corners none{};
        QVERIFY(none.isEmpty());
        QVERIFY((diagonal == Corners{Corners::bottomRight, Corners::topLeft}));
        QVERIFY(diagonal == Corners(std::int64_t{9}));
    }

    void setOperations()
    {
        Corners corners = Corners::topLeft | Corners::topRight;
        QVERIFY(corners.contains(Corners::topLeft));
        QVERIFY(!corners.contains(Corners::bottomLeft));
        QVERIFY(!corners.contains(Corners::topLeft | Corners::bottomLeft)); // all of them or no
        QVERIFY(corners.contains(Corners()));
        QVERIFY((corners & Corners::topRight) == Corners::topRight);
        QVERIFY((corners & Corners::bottomRight).isEmpty());
        corners.insert(Corners::bottomLeft);
        corners.remove(Corners::topLeft);
        QCOMPARE(corners.rawValue, 6);
    }

    void flippingMirrorsTopToBottom_data()
    {
        QTest::addColumn<qint64>("value");
        QTest::addColumn<qint64>("flipped");
        QTest::newRow("empty") << qint64(0) << qint64(0);
        QTest::newRow("top left") << qint64(1) << qint64(2);
        QTest::newRow("bottom left") << qint64(2) << qint64(1);
        QTest::newRow("top right") << qint64(4) << qint64(8);
        QTest::newRow("bottom right") << qint64(8) << qint64(4);
        QTest::newRow("top left and bottom right") << qint64(9) << qint64(6);
        QTest::newRow("left side") << qint64(3) << qint64(3);
        QTest::newRow("top side") << qint64(5) << qint64(10);
        QTest::newRow("all") << qint64(15) << qint64(15);
    }

    void flippingMirrorsTopToBottom()
    {
        QFETCH(qint64, value);
        QFETCH(qint64, flipped);
        const Corners corners(std::int64_t{value});
        QCOMPARE(corners.flipped().rawValue, flipped);
        QVERIFY(corners.flipped().flipped() == corners);
    }
};

PLOVENDIX_TEST(CornersTest)
#include "CornersTest.moc"
