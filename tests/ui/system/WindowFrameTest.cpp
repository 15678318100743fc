#include <tests/support/TestMain.h>
#include <ui/system/WindowFrame.h>

#include <QTest>

using WindowFrame::Look;
using WindowFrame::Situation;

Q_DECLARE_METATYPE(Situation)
Q_DECLARE_METATYPE(Look)

class WindowFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookFollowsTheSituation_data()
    {
        constexpr Look shadowed{.rounded = true, .margin = 28, .hairline = false};
        constexpr Look roundedAlone{.rounded = true, .margin = 0, .hairline = true};
        constexpr Look squareLined{.rounded = false, .margin = 0, .hairline = true};
        constexpr Look bare{};
        QTest::addColumn<Situation>("situation");
        QTest::addColumn<Look>("look");
        QTest::newRow("compositor that knows of margins")
            << Situation{.composited = true, .placedByFrame = true} << shadowed;
        QTest::newRow("compositor that does not") << Situation{.composited = true} << roundedAlone;
        QTest::newRow("no compositor") << Situation{.placedByFrame = true} << squareLined;
        QTest::newRow("maximised") << Situation{.composited = true, .placedByFrame = true, .maximized = true}
                                   << bare;
        QTest::newRow("full screen") << Situation{.composited = true,
                                                  .placedByFrame = true,
                                                  .fullScreen = true}
                                     << bare;
        QTest::newRow("tiled") << Situation{.composited = true, .placedByFrame = true, .tiled = true}
                               << squareLined;
        QTest::newRow("maximised without compositor") << Situation{.maximized = true} << bare;
    }

    void lookFollowsTheSituation()
    {
        QFETCH(Situation, situation);
        QFETCH(Look, look);
        QCOMPARE(WindowFrame::lookFor(situation), look);
    }

    void edgesAreWhereTheyAreGrabbed_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("margin");
        QTest::addColumn<Qt::Edges>("edges");
        QTest::addColumn<Qt::CursorShape>("cursor");
        const auto row = [](const char *name, const QPoint &point, int margin, Qt::Edges edges,
                            Qt::CursorShape cursor) {
            QTest::newRow(name) << point << margin << edges << cursor;
        };
        // The window is 816 × 696: a frame of 760 × 640 inside a margin of 28, or all frame.
        row("left", {24, 300}, 28, Qt::LeftEdge, Qt::SizeHorCursor);
        row("left, the outermost point", {20, 300}, 28, Qt::LeftEdge, Qt::SizeHorCursor);
        row("beyond the left zone", {19, 300}, 28, {}, Qt::ArrowCursor);
        row("the frame itself", {28, 300}, 28, {}, Qt::ArrowCursor);
        row("right", {788, 300}, 28, Qt::RightEdge, Qt::SizeHorCursor);
        row("right, the outermost point", {795, 300}, 28, Qt::RightEdge, Qt::SizeHorCursor);
        row("beyond the right zone", {796, 300}, 28, {}, Qt::ArrowCursor);
        row("top", {400, 22}, 28, Qt::TopEdge, Qt::SizeVerCursor);
        row("bottom", {400, 670}, 28, Qt::BottomEdge, Qt::SizeVerCursor);
        row("corner", {24, 24}, 28, Qt::LeftEdge | Qt::TopEdge, Qt::SizeFDiagCursor);
        row("top near the left corner", {40, 24}, 28, Qt::LeftEdge | Qt::TopEdge, Qt::SizeFDiagCursor);
        row("left near the bottom corner", {24, 660}, 28, Qt::LeftEdge | Qt::BottomEdge, Qt::SizeBDiagCursor);
        row("right near the top corner", {790, 30}, 28, Qt::RightEdge | Qt::TopEdge, Qt::SizeBDiagCursor);
        row("bottom near the right corner", {780, 672}, 28, Qt::RightEdge | Qt::BottomEdge,
            Qt::SizeFDiagCursor);
        row("square: left", {4, 300}, 0, Qt::LeftEdge, Qt::SizeHorCursor);
        row("square: inside", {5, 300}, 0, {}, Qt::ArrowCursor);
        row("square: right", {811, 300}, 0, Qt::RightEdge, Qt::SizeHorCursor);
        row("square: inside the right", {810, 300}, 0, {}, Qt::ArrowCursor);
        row("square: corner", {0, 0}, 0, Qt::LeftEdge | Qt::TopEdge, Qt::SizeFDiagCursor);
        row("square: outside", {-1, 300}, 0, {}, Qt::ArrowCursor);
    }

    void edgesAreWhereTheyAreGrabbed()
    {
        QFETCH(QPoint, point);
        QFETCH(int, margin);
        QFETCH(Qt::Edges, edges);
        QFETCH(Qt::CursorShape, cursor);
        QCOMPARE(WindowFrame::edgesAt(point, {816, 696}, margin), edges);
        QCOMPARE(WindowFrame::cursorFor(edges), cursor);
    }

    void grabZoneIsEveryPlaceWithAnEdge_data()
    {
        QTest::addColumn<int>("margin");
        QTest::newRow("shadow") << 28;
        QTest::newRow("square") << 0;
    }

    void grabZoneIsEveryPlaceWithAnEdge()
    {
        QFETCH(int, margin);
        constexpr QSize size{150, 120};
        const QRegion zone = WindowFrame::grabZone(size, margin);
        QVERIFY(!zone.isEmpty());
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                QCOMPARE(zone.contains(QPoint(x, y)), bool(WindowFrame::edgesAt({x, y}, size, margin)));
        }
    }
};

PLOVENDIX_PLAIN_TEST(WindowFrameTest)
#include "WindowFrameTest.moc"
