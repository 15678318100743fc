#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>

#include <QPointer>

using namespace std::chrono_literals;

namespace
{
/// The area that is red, along the middle lines, of what the view draws.
QSize covered(const ImageView &view)
{
    const QImage image = painted(view.size(), [&](QPainter &painter) { view.draw(painter, view.rect()); });
    int width = 0;
    int height = 0;
    for (int x = 0; x < image.width(); ++x)
        width += image.pixelColor(x, image.height() / 2) == QColor(Qt::red);
    for (int y = 0; y < image.height(); ++y)
        height += image.pixelColor(image.width() / 2, y) == QColor(Qt::red);
    return {width, height};
}

ui::Image square(const QColor &color)
{
    return solidImage({10, 10}, color);
}

QColor grabbed(ImageView &view)
{
    return view.grab().toImage().pixelColor(view.rect().center());
}
} // namespace

class ImageViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void pictureIsPlaced_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSize>("shown"); // in a view of 40 by 30
        QTest::addColumn<QSize>("layered");
        QTest::newRow("a small one keeps its size") << QSize(10, 10) << QSize(10, 10) << QSize(30, 30);
        QTest::newRow("a wide one is made to fit") << QSize(120, 60) << QSize(40, 20) << QSize(40, 20);
        QTest::newRow("a high one is made to fit") << QSize(20, 60) << QSize(10, 30) << QSize(10, 30);
    }
    void pictureIsPlaced()
    {
        QFETCH(QSize, picture);
        ImageView view;
        view.resize(40, 30);
        const QSize hint = view.sizeHint();
        view.setImage(solidImage(picture, Qt::red));
        QCOMPARE(view.sizeHint(), hint); // setting an image causes no layout
        QTEST(covered(view), "shown");
        view.setAspectFill(true);
        QCOMPARE(covered(view), view.size());
        view.setWantsLayer(true);
        QCOMPARE(covered(view), view.size());
        view.setAspectFill(false);
        QTEST(covered(view), "layered");
    }

    void imageIsReadBackAndInTheLayer()
    {
        ImageView view;
        QVERIFY(!view.image() && !view.layer() && !view.wantsLayer());
        const ui::Image red = square(Qt::red);
        view.setImage(red);
        QVERIFY(view.image() == red);
        view.setWantsLayer(true);
        const ui::Layer *made = view.layer();
        QVERIFY(view.wantsLayer() && made->contents() == red);
        view.setWantsLayer(true);
        QCOMPARE(view.layer(), made);
        view.setImage(std::nullopt);
        QVERIFY(!view.image() && !made->contents());
    }

    void givenLayerKeepsItsGravityAndIsDrawnWhenWanted()
    {
        ImageView view;
        view.resize(40, 30);
        view.setLayer(std::make_unique<ui::Layer>());
        const ui::Layer *given = view.layer();
        view.layer()->setContents(square(Qt::red));
        view.layer()->setContentsGravity(ContentsGravity::Center);
        QCOMPARE(covered(view), QSize(0, 0));
        view.setAspectFill(true);
        view.setWantsLayer(true);
        QCOMPARE(view.layer(), given);
        QCOMPARE(covered(view), QSize(10, 10));
    }

    void changesAreRepainted()
    {
        ImageView view;
        PaintCounter paints(view);
        view.resize(10, 10);
        view.show();
        QTRY_VERIFY(paints.count > 0);
        const std::function<void()> changes[] = {
            [&] { view.setImage(square(Qt::red)); }, [&] { view.setAspectFill(true); },
            [&] { view.setWantsLayer(true); }, [&] { view.layer()->setCornerRadius(3); },
            [&] { view.setLayer(nullptr); }};
        for (const auto &change : changes) {
            paints.count = 0;
            change();
            QTRY_COMPARE(paints.count, 1);
        }
        QCOMPARE(grabbed(view), QColor(Qt::red));
    }

    void oldImageFadesIntoTheNewOrNone()
    {
        ImageView view;
        view.resize(10, 10);
        view.setImage(square(Qt::red));
        view.setWantsLayer(true);
        view.layer()->setCornerRadius(6);
        for (const auto &next : {std::optional(square(Qt::blue)), std::optional<ui::Image>()}) {
            const QColor before = grabbed(view);
            view.setImageWithFade(next);
            QVERIFY(view.image() == next);
            QCOMPARE(grabbed(view), before);
            QTRY_COMPARE(view.layer()->fadeProgress(), 1.0);
            QVERIFY(grabbed(view) != before);
        }
        QCOMPARE(view.layer()->cornerRadius(), 6.0); // the layer stays
    }

    void aspectFillImageViewGivesEachImageANewLayer()
    {
        AspectFillImageView view;
        view.resize(60, 60);
        const ui::Image red = solidImage({30, 90}, Qt::red);
        view.setImage(red);
        QVERIFY(!view.image()); // never read back
        QVERIFY(view.wantsLayer());
        QVERIFY(view.layer()->contents() == red);
        QCOMPARE(covered(view), QSize(60, 60));
        const QPointer<ui::Layer> first = view.layer();
        first->setCornerRadius(6);
        view.setImageWithFade(std::nullopt); // the fade goes with the layer
        QVERIFY(!first);
        QVERIFY(view.layer() && !view.layer()->contents());
        QCOMPARE(view.layer()->cornerRadius(), 0.0);
        QCOMPARE(view.layer()->transition(), 0ms);
        QCOMPARE(covered(view), QSize(0, 0));
    }
};

PLOVENDIX_GUI_TEST(ImageViewTest)
#include "ImageViewTest.moc"
