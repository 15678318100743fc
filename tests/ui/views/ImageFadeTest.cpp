#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageFade.h>
#include <ui/views/ImageView.h>

#include <QPointer>
#include <QTest>
#include <QVariantAnimation>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
ui::Image solid(const QColor &color)
{
    QImage pixels(10, 10, QImage::Format_RGB32);
    pixels.fill(color);
    return ui::Image(pixels);
}

/// Notes what the view had when the image was set.
class WatchedImageView final : public ImageView
{
public:
    void setImage(const std::optional<ui::Image> &image) override
    {
        hadLayer = wantsLayer() && layer();
        transition = layer() ? layer()->animation(u"transition"_s) : std::nullopt;
        ImageView::setImage(image);
    }
    bool hadLayer = false;
    std::optional<Transition> transition;
};
} // namespace

class ImageFadeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void layerAndTransitionComeBeforeTheImage()
    {
        WatchedImageView view;
        setImageWithFade(view, solid(Qt::red));
        QVERIFY(view.hadLayer);
        QVERIFY(view.transition);
        QCOMPARE(view.transition->duration, 250ms);
        QCOMPARE(view.transition->timingFunction, TimingFunction::EaseInEaseOut);
        QCOMPARE(view.transition->type, Transition::Type::Fade);
    }

    void oldImageFadesIntoTheNew()
    {
        ImageView view;
        view.resize(10, 10);
        view.setImage(solid(Qt::red));
        const ui::Image fresh = solid(Qt::blue);
        setImageWithFade(view, fresh);
        QVERIFY(view.image() == fresh);
        QCOMPARE(view.layer()->fadeProgress(), 0.0);
        QCOMPARE(view.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
        QTRY_COMPARE(view.grab().toImage().pixelColor(5, 5), QColor(Qt::blue));
        QCOMPARE(view.layer()->fadeProgress(), 1.0);
    }

    void noImageClearsWithTheSameFade()
    {
        ImageView view;
        view.resize(10, 10);
        view.setImage(solid(Qt::red));
        setImageWithFade(view, std::nullopt);
        QVERIFY(!view.image());
        QCOMPARE(view.layer()->fadeProgress(), 0.0);
        QCOMPARE(view.layer()->animation(u"transition"_s).value().duration, 250ms);
        QCOMPARE(view.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
        QTRY_COMPARE(view.layer()->fadeProgress(), 1.0);
        QVERIFY(view.grab().toImage().pixelColor(5, 5) != QColor(Qt::red));
    }

    void reducedMotionShowsTheImageAtOnce()
    {
        Animator::setReducedMotion(true);
        ImageView view;
        view.resize(10, 10);
        view.setImage(solid(Qt::red));
        const ui::Image fresh = solid(Qt::blue);
        setImageWithFade(view, fresh);
        QVERIFY(view.image() == fresh);
        QVERIFY(view.layer()->contents() == fresh);
        QCOMPARE(view.layer()->fadeProgress(), 1.0);
        QCOMPARE(view.grab().toImage().pixelColor(5, 5), QColor(Qt::blue));
    }

    void roundedCornersOfTheLayerStay()
    {
        ImageView view;
        view.setWantsLayer(true);
        view.layer()->setCornerRadius(6);
        view.layer()->setMasksToBounds(true);
        setImageWithFade(view, solid(Qt::blue));
        QCOMPARE(view.layer()->cornerRadius(), 6.0);
        QVERIFY(view.layer()->masksToBounds());
    }

    void viewMayGoDuringTheFade()
    {
        auto view = std::make_unique<ImageView>();
        setImageWithFade(*view, solid(Qt::blue));
        const QPointer<QVariantAnimation> fade = view->layer()->findChild<QVariantAnimation *>();
        QVERIFY(fade);
        view.reset();
        QVERIFY(!fade);
    }
};

PLOVENDIX_GUI_TEST(ImageFadeTest)
#include "ImageFadeTest.moc"
