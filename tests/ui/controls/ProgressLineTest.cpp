#include <tests/support/TestMain.h>
#include <ui/controls/ProgressLine.h>
#include <ui/style/ChromeColors.h>

class ProgressLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsFilledFromTheReadingSide_data()
    {
        QTest::addColumn<int>("value"); // of 10 to 110
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::addColumn<QList<int>>("filled"); // of the places 3, 40, 60, and 97
        QTest::newRow("nothing") << 10 << Qt::LeftToRight << QList<int>{};
        QTest::newRow("a little is as long as thick") << 11 << Qt::LeftToRight << QList<int>{3};
        QTest::newRow("half") << 60 << Qt::LeftToRight << QList<int>{3, 40};
        QTest::newRow("half, from the right") << 60 << Qt::RightToLeft << QList<int>{60, 97};
        QTest::newRow("all") << 110 << Qt::LeftToRight << QList<int>{3, 40, 60, 97};
    }
    void lineIsFilledFromTheReadingSide()
    {
        QFETCH(int, value);
        QFETCH(Qt::LayoutDirection, direction);
        QFETCH(QList<int>, filled);
        ProgressLine line;
        QVERIFY(!line.isTextVisible());
        QCOMPARE(line.sizeHint().height(), line.minimumSizeHint().height());
        line.setLayoutDirection(direction);
        line.setRange(10, 110);
        line.setValue(value);
        line.resize(100, 20);
        const QImage image = line.grab().toImage();
        QList<int> found;
        for (const int x : {3, 40, 60, 97}) {
            if (image.pixelColor(x, 10) == ChromeColors::of(line.palette()).accent)
                found += x;
        }
        QCOMPARE(found, filled);
        QCOMPARE(image.pixelColor(50, 6), image.pixelColor(50, 1)); // the line is 6 points thick
        QVERIFY(image.pixelColor(50, 7) != image.pixelColor(50, 1));
    }
};

PLOVENDIX_GUI_TEST(ProgressLineTest)
#include "ProgressLineTest.moc"
