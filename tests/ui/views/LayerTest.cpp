#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Layer.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(ContentsGravity)

namespace
{
QColor centreOf(const ui::Layer &layer)
{
    const QImage image = painted({20, 20}, [&](QPainter &painter) { layer.draw(painter, {0, 0, 20, 20}); });
    return image.pixelColor(10, 10);
}
} // namespace

class LayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gravityPlacesTheContents_data()
    {
        QTest::addColumn<ContentsGravity>("gravity");
        QTest::addColumn<QRect>("covered"); // of bounds of 40 by 20 by a square of 10
        QTest::newRow("resize") << ContentsGravity::Resize << QRect(0, 0, 40, 20);
        QTest::newRow("aspect") << ContentsGravity::ResizeAspect << QRect(10, 0, 20, 20);
        QTest::newRow("aspect fill") << ContentsGravity::ResizeAspectFill << QRect(0, 0, 40, 20);
        QTest::newRow("center") << ContentsGravity::Center << QRect(15, 5, 10, 10);
    }

    void gravityPlacesTheContents()
    {
        QFETCH(ContentsGravity, gravity);
        QFETCH(QRect, covered);
        ui::Layer layer;
        layer.setContentsGravity(gravity);
        layer.setContents(solidImage({10, 10}, Qt::red));
        const QImage image = painted({40, 20}, [&](QPainter &painter) {
            layer.draw(painter, {0, 0, 40, 20});
        });
        for (int x = 1; x < 40; x += 2) {
            for (int y = 1; y < 20; y += 2) {
                const QColor expected = covered.contains(x, y) ? Qt::red : Qt::white;
                QVERIFY2(image.pixelColor(x, y) == expected, qPrintable(u"%1, %2"_s.arg(x).arg(y)));
            }
        }
    }

    void nothingIsDrawnOutsideTheBounds()
    {
        ui::Layer layer;
        layer.setContentsGravity(ContentsGravity::ResizeAspectFill);
        layer.setContents(solidImage({10, 40}, Qt::red));
        const QImage image = painted({40, 40}, [&](QPainter &painter) {
            layer.draw(painter, {10, 10, 20, 20});
        });
        QCOMPARE(image.pixelColor(20, 9), QColor(Qt::white));
        QCOMPARE(image.pixelColor(20, 10), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 29), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 30), QColor(Qt::white));
    }

    void anEmptyLayerDrawsNothing()
    {
        const ui::Layer layer;
        QCOMPARE(centreOf(layer), QColor(Qt::white));
        ui::Layer pictureless;
        pictureless.setContents(ui::Image(QImage()));
        QCOMPARE(centreOf(pictureless), QColor(Qt::white));
    }

    void roundedCornersAreCutWhenMasking()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::red));
        layer.setCornerRadius(6);
        layer.setMasksToBounds(true);
        const QImage image = painted(
            {20, 20},
            [&](QPainter &painter) {
                layer.draw(painter, {0, 0, 20, 20});
            },
            2);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(image.pixelColor(39, 39), QColor(Qt::white));
        QCOMPARE(image.pixelColor(20, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
        // The edge of the corner is smooth: some pixel is neither.
        bool smooth = false;
        for (int x = 0; x < 12; ++x)
            smooth |=
                image.pixelColor(x, 1) != QColor(Qt::red) && image.pixelColor(x, 1) != QColor(Qt::white);
        QVERIFY(smooth);
    }

    void cornersStayWithoutMasking()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::red));
        layer.setCornerRadius(6);
        const QImage image = painted({20, 20}, [&](QPainter &painter) {
            layer.draw(painter, {0, 0, 20, 20});
        });
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
    }

    void contentsChangeAtOnceWithoutATransition()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::red));
        QCOMPARE(layer.fadeProgress(), 1.0);
        QCOMPARE(centreOf(layer), QColor(Qt::red));
    }

    void everyChangeAsksForDisplay()
    {
        ui::Layer layer;
        QSignalSpy asked(&layer, &ui::Layer::needsDisplay);
        layer.setContents(solidImage({20, 20}, Qt::red));
        QCOMPARE(asked.count(), 1);
        layer.setCornerRadius(3);
        layer.setMasksToBounds(true);
        layer.setContentsGravity(ContentsGravity::Center);
        QCOMPARE(asked.count(), 4);
        QCOMPARE(layer.cornerRadius(), 3.0);
        QVERIFY(layer.masksToBounds());
        QCOMPARE(layer.contentsGravity(), ContentsGravity::Center);
    }
};

PLOVENDIX_GUI_TEST(LayerTest)
#include "LayerTest.moc"
