#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/AspectFillImageView.h>
#include <ui/views/ImageFade.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
ui::Image solid(const QSize &size, const QColor &color)
{
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(color);
    return ui::Image(pixels);
}

/// Three stripes one above the other, the middle one blue.
ui::Image striped()
{
    QImage pixels(30, 90, QImage::Format_RGB32);
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 30; ++x)
            pixels.setPixelColor(x, y, y >= 30 && y < 60 ? Qt::blue : Qt::red);
    }
    return ui::Image(pixels);
}
} // namespace

class AspectFillImageViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imageIsNeverReadBack()
    {
        AspectFillImageView view;
        QVERIFY(!view.image());
        view.setImage(solid({10, 10}, Qt::red));
        QVERIFY(!view.image());
        const ImageView &base = view;
        QVERIFY(!base.image());
    }

    void imageGoesToANewLayerThatFills()
    {
        AspectFillImageView view;
        const ui::Image image = solid({10, 10}, Qt::red);
        QVERIFY(!view.layer());
        view.setImage(image);
        QVERIFY(view.wantsLayer());
        QVERIFY(view.layer());
        QCOMPARE(view.layer()->contentsGravity(), ContentsGravity::ResizeAspectFill);
        QVERIFY(view.layer()->contents() == image);
    }

    void everyImageReplacesTheLayerWithWhatItHad()
    {
        AspectFillImageView view;
        view.setImage(solid({10, 10}, Qt::red));
        const QPointer<ui::Layer> first = view.layer();
        first->setCornerRadius(6);
        first->setMasksToBounds(true);
        first->addAnimation(Transition{}, u"transition"_s);
        view.setImage(solid({10, 10}, Qt::blue));
        QVERIFY(!first);
        QCOMPARE(view.layer()->cornerRadius(), 0.0);
        QVERIFY(!view.layer()->masksToBounds());
        QVERIFY(!view.layer()->animation(u"transition"_s));
    }

    void absentImageEmptiesTheLayer()
    {
        AspectFillImageView view;
        view.resize(20, 20);
        view.setImage(solid({10, 10}, Qt::red));
        QCOMPARE(view.grab().toImage().pixelColor(10, 10), QColor(Qt::red));
        view.setImage(std::nullopt);
        QVERIFY(view.layer());
        QVERIFY(!view.layer()->contents());
        QVERIFY(view.grab().toImage().pixelColor(10, 10) != QColor(Qt::red));
    }

    void frameIsFilledAndTheOverflowCropped()
    {
        AspectFillImageView view;
        view.resize(60, 60); // the picture, twice as wide, is 180 high: the middle 60 are the blue stripe
        view.setImage(striped());
        const QImage shown = view.grab().toImage();
        for (const QPoint &point :
             {QPoint(1, 3), QPoint(58, 3), QPoint(1, 56), QPoint(58, 56), QPoint(30, 30)})
            QCOMPARE(shown.pixelColor(point), QColor(Qt::blue));
    }

    void fadeIsLostWithTheLayer()
    {
        Animator::setReducedMotion(false);
        AspectFillImageView view;
        view.setImage(solid({10, 10}, Qt::red));
        setImageWithFade(view, solid({10, 10}, Qt::blue));
        QCOMPARE(view.layer()->fadeProgress(), 1.0);
        Animator::setReducedMotion(std::nullopt);
    }
};

PLOVENDIX_GUI_TEST(AspectFillImageViewTest)
#include "AspectFillImageViewTest.moc"
