#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/BezierPath.h>

#include <QTest>

using Kind = BezierPath::Element::Kind;

class BezierPathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementsStayAsAdded()
    {
        BezierPath path;
        path.moveTo({1, 2});
        path.lineTo({1, 2}); // of no length
        path.curveTo({3, 4}, {5, 6}, {7, 8});
        path.close();

        const QList<BezierPath::Element> expected{{Kind::MoveTo, {1, 2}, {}, {}},
                                                  {Kind::LineTo, {1, 2}, {}, {}},
                                                  {Kind::CurveTo, {3, 4}, {5, 6}, {7, 8}},
                                                  {Kind::Close, {}, {}, {}}};
        QCOMPARE(path.elements(), expected);
    }

    void rectangleGoesOnceAround()
    {
        const BezierPath path = BezierPath::rect({10, 20, 100, 50});
        QCOMPARE(path.elements().size(), 5);
        QCOMPARE(path.elements().first().kind, Kind::MoveTo);
        QCOMPARE(path.elements().last().kind, Kind::Close);
        QCOMPARE(path.painterPath(70).boundingRect(), QRectF(10, 0, 100, 50));
    }

    void drawingGrowsDownwards()
    {
        BezierPath path;
        path.moveTo({0, 0});
        path.lineTo({10, 30});
        const QPainterPath drawn = path.painterPath(100);
        QCOMPARE(QPointF(drawn.elementAt(0)), QPointF(0, 100));
        QCOMPARE(QPointF(drawn.elementAt(1)), QPointF(10, 70));
    }

    void curvesKeepTheirControlPoints()
    {
        BezierPath path;
        path.moveTo({0, 0});
        path.curveTo({30, 30}, {10, 0}, {20, 5});
        const QPainterPath drawn = path.painterPath(40);
        QCOMPARE(drawn.elementCount(), 4);
        QCOMPARE(QPointF(drawn.elementAt(1)), QPointF(10, 40));
        QCOMPARE(QPointF(drawn.elementAt(2)), QPointF(20, 35));
        QCOMPARE(QPointF(drawn.elementAt(3)), QPointF(30, 10));
    }

    void strokeHasTheLineWidthAndThePenColour()
    {
        BezierPath path = BezierPath::rect({0, 0, 40, 40});
        QCOMPARE(path.lineWidth(), 1.0);
        path.setLineWidth(8);
        const QImage image = painted({40, 40}, [&](QPainter &painter) {
            painter.setPen(Qt::red);
            path.stroke(painter, 40);
        });
        QCOMPARE(image.pixelColor(3, 20), QColor(Qt::red)); // half of it lies inside
        QCOMPARE(image.pixelColor(4, 20), QColor(Qt::white));
        QCOMPARE(image.pixelColor(20, 36), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::white));
    }
};

PLOVENDIX_GUI_TEST(BezierPathTest)
#include "BezierPathTest.moc"
