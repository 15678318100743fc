#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QImage>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize Content{500, 400};
constexpr int Margin = 28;
constexpr int Middle = 200;

QImage picture(ui::Window &window)
{
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

int alphaAt(const QImage &image, int x, int y)
{
    return qAlpha(image.pixel(x, y));
}

void fillWithRed(ui::Window &window)
{
    const auto controller = ViewController::make<ViewController>();
    QPalette red;
    red.setColor(QPalette::Window, Qt::red);
    controller->view()->setPalette(red);
    controller->view()->setAutoFillBackground(true);
    window.setFullSizeContentView(true);
    window.setTitlebarAppearsTransparent(true);
    window.setContentViewController(controller);
    window.setContentSize(Content);
}
} // namespace

class WindowShadowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marginSurroundsTheFrameWhileACompositorRuns()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        QCOMPARE(window.shadowMargin(), Margin);
        QCOMPARE(window.contentSize(), Content);
        QCOMPARE(window.size(), QSize(500 + 2 * Margin, 400 + 38 + 2 * Margin));
    }

    void frameStaysInPlaceWhenTheCompositorComesAndGoes()
    {
        Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        window.move(100, 100);
        window.show();
        const QRect frame = window.geometry().marginsRemoved({Margin, Margin, Margin, Margin});
        composited.change(false);
        QCOMPARE(window.shadowMargin(), 0);
        QCOMPARE(window.geometry(), frame);
        QCOMPARE(window.contentSize(), Content);
        composited.change(true);
        QCOMPARE(window.shadowMargin(), Margin);
        QCOMPARE(window.geometry().marginsRemoved({Margin, Margin, Margin, Margin}), frame);
    }

    void maximisedHasNoMarginAndIsNotResized()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        window.show();
        const auto *grip = window.findChild<QWidget *>(u"edgeGrip"_s);
        QVERIFY(grip->isVisible());
        window.showMaximized();
        QCOMPARE(window.shadowMargin(), 0);
        QVERIFY(!grip->isVisible());
        window.showFullScreen();
        QCOMPARE(window.shadowMargin(), 0);
        QVERIFY(!grip->isVisible());
    }

    void restoredFrameIsWhereItWas()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        window.move(100, 100);
        window.show();
        const QRect geometry = window.geometry();
        window.showMaximized();
        QTRY_VERIFY(window.geometry() != geometry);
        window.showNormal();
        QTRY_COMPARE(window.geometry(), geometry);
        QCOMPARE(window.shadowMargin(), Margin);
    }

    void compositorThatComesWhileMaximisedCountsAfterRestoring()
    {
        Composited composited(false);
        ui::Window window;
        window.setContentSize(Content);
        window.move(100, 100);
        window.show();
        const QRect frame = window.geometry();
        window.showMaximized();
        composited.change(true);
        QCOMPARE(window.shadowMargin(), 0);
        window.showNormal();
        QCOMPARE(window.shadowMargin(), Margin);
        QTRY_COMPARE(window.geometry().marginsRemoved({Margin, Margin, Margin, Margin}), frame);
    }

    void contentNeverShowsInTheRoundedCorners()
    {
        const Composited composited(true);
        ui::Window window;
        fillWithRed(window);
        window.show();
        const QImage image = picture(window);
        const int right = image.width() - Margin - 1;
        const int bottom = image.height() - Margin - 1;
        for (const QPoint corner :
             {QPoint(Margin, Margin), QPoint(right, Margin), QPoint(Margin, bottom), QPoint(right, bottom)}) {
            const QColor color = image.pixelColor(corner);
            QVERIFY2(color.alpha() < 128, "A corner covers what is behind it");
            QCOMPARE(color.red(), 0); // the shadow is black
        }
        QCOMPARE(image.pixelColor(Margin, Middle), QColor(Qt::red));
        QCOMPARE(image.pixelColor(Margin + 13, Margin), QColor(Qt::red));
    }

    void contentFillsTheCornersOfASquareWindow()
    {
        const Composited composited(false);
        ui::Window window;
        fillWithRed(window);
        window.showMaximized();
        const QImage image = picture(window);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(Qt::red));
    }

    void shadowFadesOutBeforeTheWindowEnds()
    {
        const Composited composited(true);
        ui::Window window;
        fillWithRed(window);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QImage image = picture(window);
        const int width = image.width();
        const int height = image.height();
        for (const QPoint edge : {QPoint(0, Middle), QPoint(width - 1, Middle), QPoint(Middle, 0),
                                  QPoint(Middle, height - 1), QPoint(0, 0), QPoint(width - 1, height - 1)})
            QVERIFY(alphaAt(image, edge.x(), edge.y()) <= 4);
        for (int x = 0; x < Margin - 2; ++x)
            QVERIFY(alphaAt(image, x, Middle) <= alphaAt(image, x + 1, Middle));
        QVERIFY(alphaAt(image, Margin - 3, Middle) > 20);
        // It falls downwards.
        QVERIFY(alphaAt(image, Middle, height - Margin + 3) > alphaAt(image, Middle, Margin - 4));
    }

    void inactiveShadowIsLighter()
    {
        const Composited composited(true);
        ui::Window window;
        fillWithRed(window);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const int active = alphaAt(picture(window), Margin - 3, Middle);
        ui::Window other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(alphaAt(picture(window), Margin - 3, Middle) < active);
    }

    void gripShowsTheWayItResizes()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        window.show();
        auto *grip = window.findChild<QWidget *>(u"edgeGrip"_s);
        QCOMPARE(window.childAt(Margin - 3, Middle), grip);
        QVERIFY(window.childAt(Margin + 1, Middle) != grip);
        QTest::mouseMove(grip, {Margin - 3, Middle});
        QTRY_COMPARE(grip->cursor().shape(), Qt::SizeHorCursor);
        QTest::mouseMove(grip, {Margin - 3, Margin - 3});
        QTRY_COMPARE(grip->cursor().shape(), Qt::SizeFDiagCursor);
    }

    void fixedSizeWindowHasNoGrip()
    {
        const Composited composited(true);
        ui::Window window;
        window.setResizable(false);
        window.show();
        QVERIFY(!window.findChild<QWidget *>(u"edgeGrip"_s)->isVisible());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(WindowShadowTest)
#include "WindowShadowTest.moc"
