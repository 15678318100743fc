#include "Painted.h"

#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QBuffer>
#include <QFile>

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
    pixels.fill(Qt::red);
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
    void picturesAreReadWithTheirSize_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QSizeF>("size"); // invalid for none
        const QByteArray svg = TwoHalves;
        QTest::newRow("a drawing") << u"halves.svg"_s << svg << QSizeF(10, 10);
        QTest::newRow("a drawing with a loud suffix") << u"halves.SVG"_s << svg << QSizeF(10, 10);
        QTest::newRow("a bitmap of another suffix") << u"picture.jpg"_s << pngOf({12, 7}) << QSizeF(12, 7);
        QTest::newRow("half a drawing") << u"half.svg"_s << svg.left(svg.size() / 2) << QSizeF();
        QTest::newRow("a drawing without a size") << u"flat.svg"_s << QByteArray(FlatDrawing) << QSizeF();
        QTest::newRow("an empty bitmap") << u"empty.png"_s << QByteArray() << QSizeF();
        QTest::newRow("text for a bitmap") << u"text.png"_s << QByteArray("a text") << QSizeF();
        QTest::newRow("the head of a bitmap") << u"half.png"_s << pngOf({64, 64}).left(40) << QSizeF();
    }
    void picturesAreReadWithTheirSize()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QSizeF, size);
        const auto image = ui::Image::fromFile(m_sandbox.writeFile(name, content));
        QCOMPARE(image ? image->size() : QSizeF(), size);
        QVERIFY(!ui::Image::fromFile(m_sandbox.path(u"absent/"_s + name)));
    }

    void drawingIsCrispAtEveryRatio()
    {
        const auto image = ui::Image::fromFile(m_sandbox.writeFile(u"halves.svg"_s, TwoHalves));
        QVERIFY(image);
        for (const qreal ratio : {1.0, 1.25, 3.0}) {
            const QPixmap pixmap = image->pixmap({64, 64}, ratio);
            QCOMPARE(pixmap.size(), QSize(64, 64) * ratio);
            QCOMPARE(pixmap.devicePixelRatio(), ratio);
            const int middle = pixmap.width() / 2;
            QCOMPARE(pixmap.toImage().pixelColor(middle - 1, 5), QColor(Qt::red));
            QCOMPARE(pixmap.toImage().pixelColor(middle, 5), QColor(Qt::blue));
        }
    }

    void bitmapIsScaledWithinBounds()
    {
        const std::pair<QSizeF, QSize> cases[] = {
            {{30, 20}, {60, 40}},    {{1e9, 1e12}, {4096, 4096}}, {{100000, 2}, {4096, 4}},
            {{0.25, 1}, {1, 2}},     {{0, 10}, {0, 0}},           {{-5, 10}, {0, 0}},
            {{qQNaN(), 10}, {0, 0}}, {{qInf(), 1}, {4096, 2}},
        };
        for (const auto &[points, pixels] : cases)
            QCOMPARE(solidImage({4, 4}, Qt::red).pixmap(points, 2).size(), pixels);
    }

    void aFewSizesAreKept()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        const ui::Image copy = image;
        const auto key = image.pixmap({20, 20}, 2).cacheKey();
        const auto drawOthers = [&](int count) {
            for (int side = 30; side < 30 + count; ++side)
                QVERIFY(!image.pixmap(QSizeF(side, side), 1).isNull());
        };
        QVERIFY(image.pixmap({40, 40}, 1).cacheKey() != key); // as many pixels, but another ratio
        drawOthers(4);
        QCOMPARE(copy.pixmap({20, 20}, 2).cacheKey(), key);
        drawOthers(5);
        QCOMPARE(image.pixmap({20, 20}, 2).cacheKey(), key);
        drawOthers(6);
        QVERIFY(image.pixmap({20, 20}, 2).cacheKey() != key);
    }

    void copiesAreEqualButForTheirSize()
    {
        const ui::Image image = solidImage({10, 10}, Qt::red);
        ui::Image copy = image;
        QVERIFY(copy == image);
        copy.setSize({64, 64});
        QCOMPARE(copy.size(), QSizeF(64, 64));
        QCOMPARE(image.size(), QSizeF(10, 10));
        QVERIFY(!(copy == image));
        QVERIFY(!(solidImage({10, 10}, Qt::red) == image));
    }

    void gravityPlacesThePicture_data()
    {
        QTest::addColumn<ContentsGravity>("gravity");
        QTest::addColumn<QRect>("covered"); // of bounds of 40 by 20 at (4, 2) by a square of 10
        QTest::newRow("resize") << ContentsGravity::Resize << QRect(4, 2, 40, 20);
        QTest::newRow("aspect") << ContentsGravity::ResizeAspect << QRect(14, 2, 20, 20);
        QTest::newRow("aspect fill") << ContentsGravity::ResizeAspectFill << QRect(4, 2, 40, 20);
        QTest::newRow("center") << ContentsGravity::Center << QRect(19, 7, 10, 10);
    }
    void gravityPlacesThePicture()
    {
        QFETCH(ContentsGravity, gravity);
        QFETCH(QRect, covered);
        const QImage image = painted({48, 24}, [&](QPainter &painter) {
            solidImage({10, 10}, Qt::red).draw(painter, {4, 2, 40, 20}, gravity);
        });
        for (int x = 0; x < 48; ++x) {
            for (int y = 0; y < 24; ++y) {
                const QColor expected = covered.contains(x, y) ? Qt::red : Qt::white;
                QVERIFY2(image.pixelColor(x, y) == expected, qPrintable(u"%1, %2"_s.arg(x).arg(y)));
            }
        }
    }

    void pictureBetweenPixelsStaysSharp()
    {
        const QImage image = painted({11, 11}, [](QPainter &painter) {
            solidImage({4, 4}, Qt::red).draw(painter, {0, 0, 11, 11}, ContentsGravity::Center);
        });
        QCOMPARE(image.pixelColor(3, 5), QColor(Qt::white));
        QCOMPARE(image.pixelColor(4, 5), QColor(Qt::red));
        QCOMPARE(image.pixelColor(7, 5), QColor(Qt::red));
        QCOMPARE(image.pixelColor(8, 5), QColor(Qt::white));
    }

    void namedPicturesComeFromTheBundle()
    {
        const QString file = m_sandbox.writeFile(u"first/icons/SRT.svg"_s, TwoHalves);
        m_sandbox.writeFile(u"second/icons/SUB.svg"_s, TwoHalves);
        m_sandbox.writeFile(u"second/icons/SUB.png"_s, pngOf({5, 5}));
        m_sandbox.writeFile(u"second/icons/VTT.svg"_s, "<svg"); // damaged
        m_sandbox.writeFile(u"second/icons/VTT.png"_s, pngOf({5, 5}));
        m_sandbox.writeFile(u"second/icons/SMI.svg"_s, "<svg");
        Bundle::setMainFolder(m_sandbox.path(u"first"_s));
        const auto image = ui::Image::named(u"SRT"_s);
        QVERIFY(image);
        QVERIFY(QFile::remove(file));
        QVERIFY(ui::Image::named(u"SRT"_s) == image); // read once
        Bundle::setMainFolder(m_sandbox.path(u"second"_s));
        QVERIFY(!ui::Image::named(u"SRT"_s)); // that of the other bundle
        QCOMPARE(ui::Image::named(u"SUB"_s).value().size(), QSizeF(10, 10));
        QCOMPARE(ui::Image::named(u"VTT"_s).value().size(), QSizeF(5, 5));
        QVERIFY(!ui::Image::named(u"SMI"_s));
    }

    void unknownOrHostileNamesGiveNothing()
    {
        for (const auto *file : {"secret.svg", "icons/deep/inside.svg", "icons/.hidden.svg", "icons/.svg",
                                 "icons/..\\secret.svg", "icons/SRT.svg"})
            m_sandbox.writeFile(u"hostile/"_s + QString::fromLatin1(file), TwoHalves);
        Bundle::setMainFolder(m_sandbox.path(u"hostile"_s));
        for (const QString &name :
             {u"NOSUCH"_s, QString(), u"../secret"_s, m_sandbox.path(u"hostile/secret"_s), u"deep/inside"_s,
              u"..\\secret"_s, u"SRT"_s + QChar(u'\0'), u".hidden"_s})
            QVERIFY2(!ui::Image::named(name), qPrintable(name));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ImageTest)
#include "ImageTest.moc"
