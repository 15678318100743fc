#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>

#include <QTest>

namespace
{
QImage shown(ImageView &view)
{
    return painted(view.size(), [&](QPainter &painter) { view.draw(painter, view.rect()); });
}

/// The area that is not white, from the middle outwards.
QSize covered(const QImage &image)
{
    int width = 0;
    int height = 0;
    for (int x = 0; x < image.width(); ++x)
        width += image.pixelColor(x, image.height() / 2) != QColor(Qt::white);
    for (int y = 0; y < image.height(); ++y)
        height += image.pixelColor(image.width() / 2, y) != QColor(Qt::white);
    return {width, height};
}
} // namespace

class ImageViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(true); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void imageIsReadBack()
    {
        ImageView view;
        QVERIFY(!view.image());
        const ui::Image image = solidImage({10, 10}, Qt::red);
        view.setImage(image);
        QVERIFY(view.image() == image);
        view.setImage(std::nullopt);
        QVERIFY(!view.image());
    }

    void smallPictureKeepsItsSize()
    {
        ImageView view;
        view.resize(40, 30);
        view.setImage(solidImage({10, 10}, Qt::red));
        QCOMPARE(covered(shown(view)), QSize(10, 10));
    }

    void largePictureIsMadeToFit()
    {
        ImageView view;
        view.resize(40, 30);
        view.setImage(solidImage({120, 60}, Qt::red));
        QCOMPARE(covered(shown(view)), QSize(40, 20));
    }

    void aspectFillCropsWithAndWithoutALayer()
    {
        ImageView view;
        view.resize(40, 30);
        view.setAspectFill(true);
        view.setImage(solidImage({10, 10}, Qt::red));
        QCOMPARE(covered(shown(view)), QSize(40, 30));
        view.setWantsLayer(true);
        QCOMPARE(covered(shown(view)), QSize(40, 30));
    }

    void wantingALayerMakesOneWithTheImage()
    {
        ImageView view;
        const ui::Image image = solidImage({10, 10}, Qt::red);
        view.setImage(image);
        QVERIFY(!view.layer());
        QVERIFY(!view.wantsLayer());
        view.setWantsLayer(true);
        QVERIFY(view.wantsLayer());
        QVERIFY(view.layer());
        QVERIFY(view.layer()->contents() == image);
        const ui::Layer *made = view.layer();
        view.setWantsLayer(true);
        QCOMPARE(view.layer(), made);
    }

    void layerOfOthersIsKept()
    {
        ImageView view;
        auto layer = std::make_unique<ui::Layer>();
        const ui::Layer *set = layer.get();
        view.setLayer(std::move(layer));
        view.setWantsLayer(true);
        QCOMPARE(view.layer(), set);
    }

    void layerFollowsTheImage()
    {
        ImageView view;
        view.setWantsLayer(true);
        const ui::Image image = solidImage({10, 10}, Qt::red);
        view.setImage(image);
        QVERIFY(view.layer()->contents() == image);
        view.setImage(std::nullopt);
        QVERIFY(!view.layer()->contents());
    }

    void layerIsUsedOnlyWhenWanted()
    {
        ImageView view;
        view.resize(40, 30);
        auto layer = std::make_unique<ui::Layer>();
        layer->setContents(solidImage({40, 30}, Qt::red));
        view.setLayer(std::move(layer));
        QCOMPARE(covered(shown(view)), QSize(0, 0));
        view.setWantsLayer(true);
        QCOMPARE(covered(shown(view)), QSize(40, 30));
    }

    void aspectFillIsTheGravityOfOwnLayersOnly()
    {
        ImageView view;
        view.setWantsLayer(true);
        QCOMPARE(view.layer()->contentsGravity(), ContentsGravity::ResizeAspect);
        view.setAspectFill(true);
        QCOMPARE(view.layer()->contentsGravity(), ContentsGravity::ResizeAspectFill);

        auto layer = std::make_unique<ui::Layer>();
        layer->setContentsGravity(ContentsGravity::Center);
        view.setLayer(std::move(layer));
        view.setAspectFill(false);
        QCOMPARE(view.layer()->contentsGravity(), ContentsGravity::Center);
    }

    void changesOfTheLayerRepaint()
    {
        ImageView view;
        view.resize(40, 30);
        view.setWantsLayer(true);
        view.setImage(solidImage({40, 30}, Qt::red));
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.grab().toImage().pixelColor(1, 1), QColor(Qt::red));
        view.layer()->setMasksToBounds(true);
        view.layer()->setCornerRadius(12);
        QVERIFY(view.grab().toImage().pixelColor(0, 0) != QColor(Qt::red));
    }

    void paintsWhatItDraws()
    {
        ImageView view;
        view.resize(40, 30);
        view.setImage(solidImage({40, 30}, Qt::blue));
        QCOMPARE(view.grab().toImage().pixelColor(39, 29), QColor(Qt::blue));
    }

    void imageCostsNoLayout()
    {
        ImageView view;
        const QSize hint = view.sizeHint();
        view.setImage(solidImage({400, 300}, Qt::blue));
        QCOMPARE(view.sizeHint(), hint);
    }
};

PLOVENDIX_GUI_TEST(ImageViewTest)
#include "ImageViewTest.moc"
