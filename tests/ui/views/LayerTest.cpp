#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/Layer.h>

#include <QSignalSpy>

using namespace std::chrono_literals;

namespace
{
constexpr QSize Side(20, 20);

QImage drawn(const ui::Layer &layer, qreal devicePixelRatio = 1)
{
    return painted(
        Side, [&](QPainter &painter) { layer.draw(painter, QRectF({}, Side)); }, devicePixelRatio);
}

QColor centreOf(const ui::Layer &layer)
{
    return drawn(layer).pixelColor(10, 10);
}

/// A layer with a transition, whose contents just changed from one colour to another.
struct Fade
{
    Fade(const QColor &from, const std::optional<ui::Image> &to)
    {
        layer.setContents(solidImage(Side, from));
        layer.setTransition(200ms);
        layer.setContents(to);
    }

    /// Stops the fade at that moment.
    void holdAt(int milliseconds)
    {
        auto *fade = layer.findChild<QVariantAnimation *>();
        fade->pause();
        fade->setCurrentTime(milliseconds);
    }

    ui::Layer layer;
};
} // namespace

class LayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void roundedCornersAreCutWhenMasking()
    {
        ui::Layer layer;
        QCOMPARE(centreOf(layer), QColor(Qt::white)); // without contents
        layer.setContents(solidImage(Side, Qt::red));
        layer.setCornerRadius(6);
        QCOMPARE(drawn(layer).pixelColor(0, 0), QColor(Qt::red));
        layer.setMasksToBounds(true);
        const QImage image = drawn(layer, 2);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(image.pixelColor(39, 39), QColor(Qt::white));
        QCOMPARE(image.pixelColor(20, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
        // The edge of the corner is smooth: some pixel is neither.
        bool smooth = false;
        for (int x = 0; x < 12; ++x)
            smooth |= image.pixelColor(x, 1).green() > 20 && image.pixelColor(x, 1).green() < 235;
        QVERIFY(smooth);
    }

    void everyChangeAsksForDisplay()
    {
        ui::Layer layer;
        QSignalSpy asked(&layer, &ui::Layer::needsDisplay);
        layer.setContents(solidImage(Side, Qt::red));
        QCOMPARE(layer.fadeProgress(), 1.0);
        QCOMPARE(asked.count(), 1);
        layer.setCornerRadius(3);
        QCOMPARE(asked.count(), 2);
        layer.setMasksToBounds(true);
        QCOMPARE(asked.count(), 3);
        layer.setContentsGravity(ContentsGravity::Center);
        QCOMPARE(asked.count(), 4);
    }

    void transitionFadesFromTheOldToTheNew()
    {
        const ui::Image fresh = solidImage(Side, Qt::blue);
        Fade fade(Qt::red, fresh);
        QSignalSpy asked(&fade.layer, &ui::Layer::needsDisplay);
        QVERIFY(fade.layer.contents() == fresh); // read back, it is the new one at once
        QCOMPARE(fade.layer.fadeProgress(), 0.0);
        QCOMPARE(centreOf(fade.layer), QColor(Qt::red));
        fade.holdAt(100);
        QCOMPARE(asked.count(), 1);
        QVERIFY(isNear(centreOf(fade.layer), QColor(128, 0, 128)));
        fade.holdAt(160); // eased out
        QVERIFY(qAbs(fade.layer.fadeProgress() - 0.918) < 0.01);
        fade.holdAt(200);
        QCOMPARE(fade.layer.fadeProgress(), 1.0);
        QCOMPARE(centreOf(fade.layer), QColor(Qt::blue));
        fade.layer.setContents(std::nullopt); // the transition serves later changes, too
        QCOMPARE(fade.layer.fadeProgress(), 0.0);
    }

    void mixtureIsAsOpaqueAsItsParts()
    {
        Fade opaque(Qt::black, solidImage(Side, QColor(1, 1, 1)));
        opaque.holdAt(100);
        QVERIFY(isNear(centreOf(opaque.layer), Qt::black)); // the white ground does not shine through
        Fade vanishing(Qt::black, std::nullopt);
        vanishing.holdAt(100);
        QVERIFY(isNear(centreOf(vanishing.layer), QColor(127, 127, 127)));
        vanishing.holdAt(200);
        QCOMPARE(centreOf(vanishing.layer), QColor(Qt::white));
    }

    void interruptedFadeGoesOnFromWhatIsSeen()
    {
        Fade fade(Qt::red, solidImage(Side, Qt::blue));
        fade.holdAt(80);
        fade.layer.setContents(solidImage(Side, Qt::black));
        const QColor first = centreOf(fade.layer);
        QVERIFY(isNear(first, QColor(171, 0, 84), 6));
        fade.holdAt(80);
        const QColor seen = centreOf(fade.layer);
        QVERIFY(seen.red() > 50 && seen.blue() > 25 && seen.red() < first.red());
        fade.layer.setContents(solidImage(Side, Qt::green));
        QVERIFY(isNear(centreOf(fade.layer), seen));
    }

    void changeWithoutMotionIsAtOnce()
    {
        Fade fade(Qt::red, std::nullopt);
        const ui::Image blue = solidImage(Side, Qt::blue);
        Animator::setReducedMotion(true);
        fade.layer.setContents(blue); // ends the fade that runs
        QCOMPARE(fade.layer.fadeProgress(), 1.0);
        QCOMPARE(centreOf(fade.layer), QColor(Qt::blue));
        Animator::setReducedMotion(false);
        fade.layer.setContents(blue); // no change
        QCOMPARE(fade.layer.fadeProgress(), 1.0);
    }
};

PLOVENDIX_GUI_TEST(LayerTest)
#include "LayerTest.moc"
