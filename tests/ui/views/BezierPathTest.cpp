#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/BezierPath.h>

using Element = BezierPath::Element;
using Kind = BezierPath::Element::Kind;

namespace
{
const Corners AllCorners(std::int64_t{15});
const QRectF Bounds(0, 0, 100, 50);

Element moveTo(qreal x, qreal y)
{
    return {Kind::MoveTo, {x, y}};
}

Element lineTo(qreal x, qreal y)
{
    return {Kind::LineTo, {x, y}};
}

/// A curve around a corner: both control points are the corner itself.
Element curveTo(const QPointF &point, const QPointF &corner)
{
    return {Kind::CurveTo, point, corner, corner};
}
} // namespace

class BezierPathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rectangleGoesOnceAround()
    {
        const QList<Element> expected{
            moveTo(10, 20), lineTo(110, 20), lineTo(110, 70), lineTo(10, 70), {Kind::Close}};
        QCOMPARE(BezierPath::rect({10, 20, 100, 50}).elements(), expected);
        const QPainterPath drawn = BezierPath::rect({10, 20, 100, 50}).painterPath(100);
        QCOMPARE(drawn.toFillPolygon(), QPolygonF({{10, 80}, {110, 80}, {110, 30}, {10, 30}, {10, 80}}));
    }

    void curvesAreDrawnWithTheirControlPointsDownwards()
    {
        const BezierPath path({moveTo(0, 0), {Kind::CurveTo, {30, 30}, {10, 0}, {20, 5}}});
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
    }

    void chosenCornersAreRounded_data()
    {
        QTest::addColumn<Corners>("corners");
        QTest::addColumn<qreal>("radius");
        QTest::addColumn<QList<Element>>("expected");
        QTest::newRow("none, begun by a segment of no length")
            << Corners() << 8.0
            << QList<Element>{moveTo(100, 0), lineTo(100, 0), lineTo(100, 50), lineTo(0, 50), lineTo(0, 0)};
        QTest::newRow("two") << Corners{Corners::topLeft, Corners::bottomRight} << 8.0
                             << QList<Element>{moveTo(100, 0),  lineTo(92, 0), curveTo({100, 8}, {100, 0}),
                                               lineTo(100, 50), lineTo(8, 50), curveTo({0, 42}, {0, 50}),
                                               lineTo(0, 0)};
        QTest::newRow("all, by nothing") << AllCorners << 0.0
                                         << QList<Element>{moveTo(100, 0),
                                                           lineTo(100, 0),
                                                           curveTo({100, 0}, {100, 0}),
                                                           lineTo(100, 50),
                                                           curveTo({100, 50}, {100, 50}),
                                                           lineTo(0, 50),
                                                           curveTo({0, 50}, {0, 50}),
                                                           lineTo(0, 0),
                                                           curveTo({0, 0}, {0, 0})};
        QTest::newRow("all, by more than there is") << AllCorners << 80.0
                                                    << QList<Element>{moveTo(100, 0),
                                                                      lineTo(20, 0),
                                                                      curveTo({100, 80}, {100, 0}),
                                                                      lineTo(100, -30),
                                                                      curveTo({20, 50}, {100, 50}),
                                                                      lineTo(80, 50),
                                                                      curveTo({0, -30}, {0, 50}),
                                                                      lineTo(0, 80),
                                                                      curveTo({80, 0}, {0, 0})};
    }
    void chosenCornersAreRounded()
    {
        QFETCH(Corners, corners);
        QFETCH(qreal, radius);
        QFETCH(QList<Element>, expected);
        QCOMPARE(BezierPath::rect(Bounds, corners, radius).elements(), expected);
        // The origin is not used.
        QCOMPARE(BezierPath::rect(Bounds.translated(10, 20), corners, radius).elements(), expected);
    }

    void curveHugsTheCorner()
    {
        // Halfway along, the curve is an eighth of the radius away from either edge.
        const auto elements = BezierPath::rect({0, 0, 100, 100}, Corners::topRight, 40).elements();
        const BezierPath corner({{Kind::MoveTo, elements.at(2).point}, elements.at(3)});
        QCOMPARE(corner.painterPath(100).pointAtPercent(0.5), QPointF(95, 5));
    }

    void bottomEdgeIsClosedByAFillOnly()
    {
        const QPainterPath drawn = BezierPath::rect(Bounds, {}, 8).painterPath(50);
        const QPainterPath stroke = QPainterPathStroker(QPen(Qt::black, 4)).createStroke(drawn);
        QVERIFY(!stroke.contains(QPointF(50, 50)));
        QVERIFY(stroke.contains(QPointF(50, 0)));
        QVERIFY(drawn.contains(QPointF(50, 49)));
    }
};

PLOVENDIX_GUI_TEST(BezierPathTest)
#include "BezierPathTest.moc"
