#include <media/PosterImage.h>
#include <tests/support/TestMain.h>

#include <QBuffer>
#include <QImage>
#include <QTest>

class PosterImageTest : public QObject
{
    Q_OBJECT

    static constexpr QSize Wanted{154, 154};

    static QByteArray solidPicture(int width, int height, const char *format = "PNG")
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        QByteArray encoded;
        QBuffer buffer(&encoded);
        image.save(&buffer, format);
        return encoded;
    }

private Q_SLOTS:
    void posterIsAsWideAsAskedAndKeepsItsProportions_data()
    {
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("one") << 1.0 << QSize(154, 231);
        QTest::newRow("one and a half") << 1.5 << QSize(231, 346);
        QTest::newRow("two") << 2.0 << QSize(308, 462);
    }

    void posterIsAsWideAsAskedAndKeepsItsProportions()
    {
        QFETCH(qreal, ratio);
        QFETCH(QSize, pixels);
        const QImage image = posterImage(solidPicture(480, 720), Wanted, ratio);
        QCOMPARE(image.size(), pixels);
        QCOMPARE(image.deviceIndependentSize().toSize().width(), Wanted.width());
    }

    void smallPictureIsNotBlownUp()
    {
        const QImage image = posterImage(solidPicture(77, 100), Wanted, 2.0);
        QCOMPARE(image.size(), QSize(77, 100));
        QCOMPARE(image.deviceIndependentSize().toSize().width(), Wanted.width());
    }

    void undecodableImagesAreNull_data()
    {
        QTest::addColumn<QByteArray>("encoded");
        const QByteArray whole = solidPicture(480, 720, "JPG");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("<html>not found</html>");
        QTest::newRow("header only") << whole.left(100);
        QTest::newRow("drawing") << QByteArray(
            "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='15'>"
            "<rect width='10' height='15'/></svg>");
        QTest::newRow("too wide") << solidPicture(5000, 10);
        QTest::newRow("too high") << solidPicture(10, 5000);
        QTest::newRow("frame larger than the picture")
            << QByteArray::fromBase64("R0lGODlhIDksABggOSwgAAAAAAAAAAAAAQAQAQAAAFA=");
        QTest::newRow("too large a file") << solidPicture(40, 60) + QByteArray(6 * 1024 * 1024, 'x');
    }

    void undecodableImagesAreNull()
    {
        QFETCH(QByteArray, encoded);
        QVERIFY(posterImage(encoded, Wanted, 1.0).isNull());
    }

    void anyRatioAndSizeIsSafe()
    {
        const QByteArray encoded = solidPicture(480, 720);
        QVERIFY(posterImage(encoded, Wanted, 0.0).isNull());
        QVERIFY(posterImage(encoded, Wanted, -1.0).isNull());
        QCOMPARE(posterImage(encoded, QSize(), 1.0).size(), QSize(480, 720));
        QCOMPARE(posterImage(encoded, QSize(1000000, 1000000), 9.0).size(), QSize(480, 720));
    }
};

PLOVENDIX_TEST(PosterImageTest)
#include "PosterImageTest.moc"
