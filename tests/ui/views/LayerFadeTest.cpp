#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/Layer.h>

#include <QPointer>
#include <QTest>
#include <QVariantAnimation>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QString Key = QString::fromLatin1(ui::Layer::TransitionKey);

/// Stops the layer's fade at that moment.
void holdFadeAt(ui::Layer &layer, int milliseconds)
{
    auto *fade = layer.findChild<QVariantAnimation *>();
    QVERIFY(fade);
    fade->pause();
    fade->setCurrentTime(milliseconds);
}

QColor centreOf(const ui::Layer &layer)
{
    const QImage image = painted({20, 20}, [&](QPainter &painter) { layer.draw(painter, {0, 0, 20, 20}); });
    return image.pixelColor(10, 10);
}
} // namespace

class LayerFadeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void transitionFadesFromTheOldToTheNew()
    {
        ui::Layer layer;
        const ui::Image fresh = solidImage({20, 20}, Qt::blue);
        layer.setContents(solidImage({20, 20}, Qt::red));
        layer.addAnimation(Transition{}, Key);
        layer.setContents(fresh);
        QVERIFY(layer.contents() == fresh); // read back, it is the new one at once
        QCOMPARE(layer.fadeProgress(), 0.0);
        QCOMPARE(centreOf(layer), QColor(Qt::red));
        QTRY_COMPARE(layer.fadeProgress(), 1.0);
        QCOMPARE(centreOf(layer), QColor(Qt::blue));
    }

    void halfwayBothAreMixed()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::red));
        layer.addAnimation(Transition{}, Key);
        layer.setContents(solidImage({20, 20}, Qt::blue));
        holdFadeAt(layer, 125);
        QVERIFY(qAbs(layer.fadeProgress() - 0.5) < 0.01);
        QVERIFY(isNear(centreOf(layer), QColor(128, 0, 128)));
    }

    void twoOpaqueContentsStayOpaqueOnTheWay()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::black));
        layer.addAnimation(Transition{}, Key);
        layer.setContents(solidImage({20, 20}, QColor(1, 1, 1)));
        holdFadeAt(layer, 125);
        QVERIFY(isNear(centreOf(layer), Qt::black)); // the white ground does not shine through
    }

    void fadeToNothing()
    {
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::black));
        layer.addAnimation(Transition{}, Key);
        layer.setContents(std::nullopt);
        QVERIFY(!layer.contents());
        holdFadeAt(layer, 125);
        QVERIFY(isNear(centreOf(layer), QColor(127, 127, 127)));
        layer.findChild<QVariantAnimation *>()->resume();
        QTRY_COMPARE(centreOf(layer), QColor(Qt::white));
    }

    void easesInAndOut()
    {
        ui::Layer layer;
        layer.addAnimation(Transition{}, Key);
        layer.setContents(solidImage({20, 20}, Qt::red));
        QCOMPARE(layer.findChild<QVariantAnimation *>()->duration(), 250);
        holdFadeAt(layer, 50);
        QVERIFY(layer.fadeProgress() > 0.05 && layer.fadeProgress() < 0.15);
        holdFadeAt(layer, 200);
        QVERIFY(layer.fadeProgress() > 0.85 && layer.fadeProgress() < 0.95);
    }

    void linearTransitionIsEven()
    {
        ui::Layer layer;
        layer.addAnimation({Transition::Type::Fade, 1000ms, TimingFunction::Linear}, Key);
        layer.setContents(solidImage({20, 20}, Qt::red));
        holdFadeAt(layer, 200);
        QVERIFY(qAbs(layer.fadeProgress() - 0.2) < 0.001);
    }

    void interruptedFadeGoesOnFromWhatIsSeen()
    {
        ui::Layer layer;
        layer.addAnimation({Transition::Type::Fade, 1000ms, TimingFunction::Linear}, Key);
        layer.setContents(solidImage({20, 20}, Qt::red));
        holdFadeAt(layer, 1000);
        QTRY_COMPARE(layer.fadeProgress(), 1.0);
        layer.setContents(solidImage({20, 20}, Qt::blue));
        holdFadeAt(layer, 250);
        const QColor seen = centreOf(layer);
        QVERIFY(isNear(seen, QColor(191, 0, 64)));
        layer.setContents(solidImage({20, 20}, Qt::green));
        QVERIFY(isNear(centreOf(layer), seen));
    }

    void reducedMotionChangesAtOnce()
    {
        Animator::setReducedMotion(true);
        ui::Layer layer;
        layer.setContents(solidImage({20, 20}, Qt::red));
        layer.addAnimation(Transition{}, Key);
        layer.setContents(solidImage({20, 20}, Qt::blue));
        QCOMPARE(layer.fadeProgress(), 1.0);
        QCOMPARE(centreOf(layer), QColor(Qt::blue));
    }

    void sameContentsStartNoFade()
    {
        ui::Layer layer;
        const ui::Image image = solidImage({20, 20}, Qt::red);
        layer.setContents(image);
        layer.addAnimation(Transition{}, Key);
        layer.setContents(image);
        QCOMPARE(layer.fadeProgress(), 1.0);
        QVERIFY(!layer.findChild<QVariantAnimation *>());
    }

    void transitionServesLaterChangesToo()
    {
        ui::Layer layer;
        layer.addAnimation({Transition::Type::Fade, 1ms, TimingFunction::Linear}, Key);
        layer.setContents(solidImage({20, 20}, Qt::red));
        QTRY_COMPARE(layer.fadeProgress(), 1.0);
        layer.setContents(std::nullopt);
        QCOMPARE(layer.fadeProgress(), 0.0);
    }

    void transitionsAreFoundByTheirKey()
    {
        ui::Layer layer;
        QVERIFY(!layer.animation(Key));
        layer.addAnimation({Transition::Type::Fade, 70ms, TimingFunction::Linear}, Key);
        QVERIFY(!layer.animation(u"other"_s));
        QCOMPARE(layer.animation(Key).value().duration, 70ms);
        // One under another key is kept, but is not for the contents.
        ui::Layer other;
        other.addAnimation(Transition{}, u"other"_s);
        other.setContents(solidImage({20, 20}, Qt::red));
        QCOMPARE(other.fadeProgress(), 1.0);
    }

    void layerMayGoDuringAFade()
    {
        auto layer = std::make_unique<ui::Layer>();
        layer->addAnimation(Transition{}, Key);
        layer->setContents(solidImage({20, 20}, Qt::red));
        const QPointer<QVariantAnimation> fade = layer->findChild<QVariantAnimation *>();
        QVERIFY(fade);
        layer.reset();
        QVERIFY(!fade);
    }
};

PLOVENDIX_GUI_TEST(LayerFadeTest)
#include "LayerFadeTest.moc"
