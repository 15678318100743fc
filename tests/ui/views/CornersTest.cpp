#include <tests/support/TestMain.h>
#include <ui/views/Corners.h>

class CornersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void literalsAreTheUnionOfTheirMembers()
    {
        QCOMPARE(Corners::topLeft.rawValue, 1);
        QCOMPARE(Corners::bottomLeft.rawValue, 2);
        QCOMPARE(Corners::topRight.rawValue, 4);
        QCOMPARE(Corners::bottomRight.rawValue, 8);
        static_assert(sizeof(Corners::rawValue) == 8);
        QVERIFY(Corners{}.isEmpty());
        const Corners diagonal{Corners::topLeft, Corners::bottomRight, Corners::topLeft};
        QCOMPARE(diagonal.rawValue, 9);
        QVERIFY(diagonal == Corners(std::int64_t{9}));
        QVERIFY(!diagonal.isEmpty());
    }

    void setOperations()
    {
        const Corners corners = Corners::topLeft | Corners::topRight;
        QVERIFY(corners.contains(Corners::topLeft));
        QVERIFY(!corners.contains(Corners::bottomLeft));
        QVERIFY(!corners.contains(Corners::topLeft | Corners::bottomLeft)); // all of them or none
        QVERIFY(corners.contains(Corners()));
        QVERIFY((corners & Corners::topRight) == Corners::topRight);
        QVERIFY((corners & Corners::bottomRight).isEmpty());
    }

    void flippingMirrorsTopToBottom()
    {
        // The number of each set, and at its place that of the mirrored set.
        constexpr int Flipped[] = {0, 2, 1, 3, 8, 10, 9, 11, 4, 6, 5, 7, 12, 14, 13, 15};
        for (std::int64_t value = 0; value < 16; ++value) {
            const Corners corners(value);
            QCOMPARE(corners.flipped().rawValue, Flipped[value]);
            QVERIFY(corners.flipped().flipped() == corners);
        }
    }
};

PLOVENDIX_PLAIN_TEST(CornersTest)
#include "CornersTest.moc"
