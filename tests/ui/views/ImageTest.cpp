#include "Painted.h"

#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QBuffer>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// Left half red, right half blue.
constexpr auto TwoHalves =
    "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10' viewBox='0 0 10 10'>"
    "<rect width='5' height='10' fill='#ff0000'/>"
    "<rect x='5' width='5' height='10' fill='#0000ff'/></svg>";
constexpr auto FlatDrawing = "<svg xmlns='http://www.w3.org/2000/svg' width='0' height='0'/>";

QByteArray pngOf(const QSize &size)
{
    QImage pixels(size, QImage::Format_RGB32);
    // Noise, so that half of the file is half of the picture.
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            pixels.setPixel(x, y, qRgb(x * 37 % 256, y * 91 % 256, x * y % 256));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    pixels.save(&buffer, "PNG");
    return buffer.data();
}
} // namespace

class ImageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawingIsReadWithItsSize()
    {
        const auto image = ui::Image::fromFile(m_sandbox.writeFile(u"halves.svg"_s, TwoHalves));
        QVERIFY(image);
        QCOMPARE(image->size(), QSizeF(10, 10));
    }

    void bitmapIsReadWhateverItsSuffix()
    {
        const auto image = ui::Image::fromFile(m_sandbox.writeFile(u"picture.jpg"_s, pngOf({12, 7})));
        QVERIFY(image);
        QCOMPARE(image->size(), QSizeF(12, 7));
    }

    void undecodableImagesGiveNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        const QByteArray svg = TwoHalves;
        QTest::newRow("an empty drawing") << u"empty.svg"_s << QByteArray();
        QTest::newRow("half a drawing") << u"half.svg"_s << svg.left(svg.size() / 2);
        QTest::newRow("text for a drawing") << u"text.svg"_s << QByteArray("no drawing at all");
        QTest::newRow("a drawing of no size") << u"flat.svg"_s << QByteArray(FlatDrawing);
        QTest::newRow("an empty bitmap") << u"empty.png"_s << QByteArray();
        QTest::newRow("text for a bitmap") << u"text.png"_s << QByteArray("no picture at all");
        const QByteArray png = pngOf({64, 64});
        QTest::newRow("the head of a bitmap") << u"half.png"_s << png.left(40);
    }

    void undecodableImagesGiveNothing()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QVERIFY(!ui::Image::fromFile(m_sandbox.writeFile(name, content)));
        QVERIFY(!ui::Image::fromFile(m_sandbox.path(u"absent/"_s + name)));
    }

    void drawingIsCrispAtEveryRatio_data()
    {
        QTest::addColumn<qreal>("ratio");
        QTest::newRow("1") << 1.0;
        QTest::newRow("1.25") << 1.25;
        QTest::newRow("2") << 2.0;
        QTest::newRow("3") << 3.0;
    }

    void drawingIsCrispAtEveryRatio()
    {
        QFETCH(qreal, ratio);
        const auto image = ui::Image::fromFile(m_sandbox.writeFile(u"halves.svg"_s, TwoHalves));
        QVERIFY(image);
        const QPixmap pixmap = image->pixmap({64, 64}, ratio);
        QCOMPARE(pixmap.size(), QSize(64, 64) * ratio);
        QCOMPARE(pixmap.devicePixelRatio(), ratio);
        const QImage pixels = pixmap.toImage();
        const int middle = pixels.width() / 2;
        QCOMPARE(pixels.pixelColor(middle - 1, 5), QColor(Qt::red));
        QCOMPARE(pixels.pixelColor(middle, 5), QColor(Qt::blue));
    }

    void bitmapIsScaledToTheSizeAskedFor()
    {
        const QPixmap pixmap = solidImage({10, 10}, Qt::green).pixmap({30, 20}, 2);
        QCOMPARE(pixmap.size(), QSize(60, 40));
        QCOMPARE(pixmap.toImage().pixelColor(30, 20), QColor(Qt::green));
    }

    void absurdSizesStayBounded_data()
    {
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("enormous") << QSizeF(1e9, 1e12) << QSize(4096, 4096);
        QTest::newRow("wide") << QSizeF(100000, 2) << QSize(4096, 2);
        QTest::newRow("empty") << QSizeF(0, 10) << QSize(0, 0);
        QTest::newRow("negative") << QSizeF(-5, 10) << QSize(0, 0);
        QTest::newRow("not a number") << QSizeF(qQNaN(), 10) << QSize(0, 0);
        QTest::newRow("endless") << QSizeF(qInf(), 1) << QSize(4096, 1);
    }

    void absurdSizesStayBounded()
    {
        QFETCH(QSizeF, size);
        QFETCH(QSize, pixels);
        QCOMPARE(solidImage({4, 4}, Qt::red).pixmap(size, 1).size(), pixels);
    }

    void sameSizeIsDrawnOnce()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        const ui::Image copy = image;
        const auto key = image.pixmap({20, 20}, 2).cacheKey();
        QCOMPARE(copy.pixmap({20, 20}, 2).cacheKey(), key);
        QVERIFY(image.pixmap({40, 40}, 1).cacheKey() != key); // as many pixels, but another ratio
        QCOMPARE(image.pixmap({20, 20}, 2).cacheKey(), key);
    }

    void onlyAFewSizesAreKept()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        const auto key = image.pixmap({20, 20}, 1).cacheKey();
        for (int side = 30; side < 60; ++side)
            QVERIFY(!image.pixmap(QSizeF(side, side), 1).isNull());
        QVERIFY(image.pixmap({20, 20}, 1).cacheKey() != key);
    }

    void sizeBelongsToTheCopy()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        ui::Image copy = image;
        copy.setSize({64, 64});
        QCOMPARE(copy.size(), QSizeF(64, 64));
        QCOMPARE(image.size(), QSizeF(10, 10));
        QVERIFY(!(copy == image));
    }

    void imagesOfOneSourceAreEqual()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        const ui::Image copy = image;
        QVERIFY(copy == image);
        QVERIFY(!(solidImage({10, 10}, Qt::red) == image));
    }

    void namedPicturesComeFromTheBundle()
    {
        m_sandbox.writeFile(u"first/icons/SRT.svg"_s, TwoHalves);
        Bundle::setMainFolder(m_sandbox.path(u"first"_s));
        const auto image = ui::Image::named(u"SRT"_s);
        QVERIFY(image);
        QCOMPARE(image->size(), QSizeF(10, 10));
        QVERIFY(!ui::Image::named(u"ASS"_s));

        m_sandbox.writeFile(u"second/icons/ASS.png"_s, pngOf({5, 5}));
        Bundle::setMainFolder(m_sandbox.path(u"second"_s));
        QVERIFY(!ui::Image::named(u"SRT"_s)); // nothing is left of the other bundle
        QVERIFY(ui::Image::named(u"ASS"_s));
    }

    void drawingIsPreferredToABitmapOfTheName()
    {
        m_sandbox.writeFile(u"both/icons/SUB.svg"_s, TwoHalves);
        m_sandbox.writeFile(u"both/icons/SUB.png"_s, pngOf({5, 5}));
        Bundle::setMainFolder(m_sandbox.path(u"both"_s));
        QCOMPARE(ui::Image::named(u"SUB"_s).value().size(), QSizeF(10, 10));
    }

    void aDamagedDrawingFallsBackToTheBitmap()
    {
        m_sandbox.writeFile(u"damaged/icons/VTT.svg"_s, "<svg");
        m_sandbox.writeFile(u"damaged/icons/VTT.png"_s, pngOf({5, 5}));
        m_sandbox.writeFile(u"damaged/icons/SMI.svg"_s, "<svg");
        Bundle::setMainFolder(m_sandbox.path(u"damaged"_s));
        QCOMPARE(ui::Image::named(u"VTT"_s).value().size(), QSizeF(5, 5));
        QVERIFY(!ui::Image::named(u"SMI"_s));
    }

    void namedPictureIsReadOnce()
    {
        const QString file = m_sandbox.writeFile(u"once/icons/SRT.svg"_s, TwoHalves);
        Bundle::setMainFolder(m_sandbox.path(u"once"_s));
        const auto first = ui::Image::named(u"SRT"_s);
        QVERIFY(first);
        QVERIFY(QFile::remove(file));
        const auto second = ui::Image::named(u"SRT"_s);
        QVERIFY(second);
        QVERIFY(*second == *first);
    }

    void unknownOrHostileNamesGiveNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("unknown") << u"NOSUCH"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("upwards") << u"../secret"_s;
        QTest::newRow("absolute") << m_sandbox.path(u"hostile/secret"_s);
        QTest::newRow("deeper") << u"deep/inside"_s;
        QTest::newRow("with a backslash") << u"..\\secret"_s;
        QTest::newRow("with a zero") << u"SRT"_s + QChar(u'\0');
        QTest::newRow("hidden") << u".hidden"_s;
    }

    void unknownOrHostileNamesGiveNothing()
    {
        QFETCH(QString, name);
        for (const auto *file :
             {"hostile/secret.svg", "hostile/icons/deep/inside.svg", "hostile/icons/.hidden.svg",
              "hostile/icons/..\\secret.svg", "hostile/icons/SRT.svg"})
            m_sandbox.writeFile(QString::fromLatin1(file), TwoHalves);
        Bundle::setMainFolder(m_sandbox.path(u"hostile"_s));
        QVERIFY(!ui::Image::named(name));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ImageTest)
#include "ImageTest.moc"
