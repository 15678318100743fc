#include <tests/support/TestMain.h>
#include <ui/views/RoundedRectPath.h>

#include <QTest>

using Element = BezierPath::Element;
using Kind = BezierPath::Element::Kind;

namespace
{
const Corners AllCorners(std::int64_t{15});

Element moveTo(qreal x, qreal y)
{
    return {Kind::MoveTo, {x, y}, {}, {}};
}

Element lineTo(qreal x, qreal y)
{
    return {Kind::LineTo, {x, y}, {}, {}};
}

/// A curve around a corner: both control points are the corner itself.
Element curveTo(const QPointF &point, const QPointF &corner)
{
    return {Kind::CurveTo, point, corner, corner};
}
} // namespace

class RoundedRectPathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noCornersGiveThePlainOutline()
    {
        const QList<Element> expected{moveTo(100, 0), lineTo(100, 0), lineTo(100, 50), lineTo(0, 50),
                                      lineTo(0, 0)};
        QCOMPARE(roundedRectPath({0, 0, 100, 50}, {}, 8).elements(), expected);
    }

    void allCornersAreRounded()
    {
        const QList<Element> expected{moveTo(100, 0),
                                      lineTo(92, 0),
                                      curveTo({100, 8}, {100, 0}),
                                      lineTo(100, 42),
                                      curveTo({92, 50}, {100, 50}),
                                      lineTo(8, 50),
                                      curveTo({0, 42}, {0, 50}),
                                      lineTo(0, 8),
                                      curveTo({8, 0}, {0, 0})};
        QCOMPARE(roundedRectPath({0, 0, 100, 50}, AllCorners, 8).elements(), expected);
    }

    void eachCornerIsRoundedAlone_data()
    {
        QTest::addColumn<qint64>("corner");
        QTest::addColumn<int>("curve"); // index of its curve
        QTest::addColumn<QPointF>("sharp");
        QTest::addColumn<QPointF>("end");
        QTest::newRow("bottom right") << qint64(8) << 2 << QPointF(100, 0) << QPointF(100, 8);
        QTest::newRow("top right") << qint64(4) << 3 << QPointF(100, 50) << QPointF(92, 50);
        QTest::newRow("top left") << qint64(1) << 4 << QPointF(0, 50) << QPointF(0, 42);
        QTest::newRow("bottom left") << qint64(2) << 5 << QPointF(0, 0) << QPointF(8, 0);
    }

    void eachCornerIsRoundedAlone()
    {
        QFETCH(qint64, corner);
        QFETCH(int, curve);
        QFETCH(QPointF, sharp);
        QFETCH(QPointF, end);
        const auto elements = roundedRectPath({0, 0, 100, 50}, Corners(std::int64_t{corner}), 8).elements();
        QCOMPARE(elements.size(), 6);
        for (int i = 0; i < elements.size(); ++i)
            QCOMPARE(elements.at(i).kind == Kind::CurveTo, i == curve);
        QCOMPARE(elements.at(curve), curveTo(end, sharp));
    }

    void originIsNotUsed()
    {
        const auto there = roundedRectPath({10, 20, 100, 50}, AllCorners, 8);
        QCOMPARE(there.elements(), roundedRectPath({0, 0, 100, 50}, AllCorners, 8).elements());
        QCOMPARE(there.painterPath(50).boundingRect(), QRectF(0, 0, 100, 50));
    }

    void radiusOfNothingAddsSegmentsOnly()
    {
        const BezierPath path = roundedRectPath({0, 0, 100, 50}, AllCorners, 0);
        const QList<Element> expected{moveTo(100, 0),
                                      lineTo(100, 0),
                                      curveTo({100, 0}, {100, 0}),
                                      lineTo(100, 50),
                                      curveTo({100, 50}, {100, 50}),
                                      lineTo(0, 50),
                                      curveTo({0, 50}, {0, 50}),
                                      lineTo(0, 0),
                                      curveTo({0, 0}, {0, 0})};
        QCOMPARE(path.elements(), expected);
        QCOMPARE(path.painterPath(50).toFillPolygon(),
                 roundedRectPath({0, 0, 100, 50}, {}, 0).painterPath(50).toFillPolygon());
    }

    void radiusIsNotClamped()
    {
        const auto elements = roundedRectPath({0, 0, 100, 50}, AllCorners, 80).elements();
        QCOMPARE(elements.at(1), lineTo(20, 0));
        QCOMPARE(elements.at(2), curveTo({100, 80}, {100, 0}));
        QCOMPARE(elements.at(3), lineTo(100, -30));
    }

    void curveHugsTheCorner()
    {
        // Halfway along, the curve is an eighth of the radius away from either edge.
        BezierPath corner;
        const auto elements = roundedRectPath({0, 0, 100, 100}, Corners::topRight, 40).elements();
        corner.moveTo(elements.at(2).point);
        corner.curveTo(elements.at(3).point, elements.at(3).controlPoint1, elements.at(3).controlPoint2);
        const QPointF middle = corner.painterPath(100).pointAtPercent(0.5);
        QCOMPARE(middle, QPointF(95, 5));
    }

    void bottomEdgeIsClosedByAFillOnly()
    {
        const BezierPath path = roundedRectPath({0, 0, 100, 50}, {}, 8);
        QPainterPathStroker stroker;
        stroker.setWidth(4);
        const QPainterPath drawn = path.painterPath(50);
        QVERIFY(!stroker.createStroke(drawn).contains(QPointF(50, 50)));
        QVERIFY(stroker.createStroke(drawn).contains(QPointF(50, 0)));
        QVERIFY(drawn.contains(QPointF(50, 49)));
    }
};

PLOVENDIX_GUI_TEST(RoundedRectPathTest)
#include "RoundedRectPathTest.moc"
