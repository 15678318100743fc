#include "Painted.h"

#include <platform/Animator.h>
#include <platform/Layer.h>

#include <QSignalSpy>
#include <QTest>
#include <QVariantAnimation>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(ContentsGravity)

namespace
{
const QString Key = QString::fromLatin1(Layer::TransitionKey);

/// Stops the layer's fade at that moment.
void holdFadeAt(Layer &layer, int milliseconds)
{
    auto *fade = layer.findChild<QVariantAnimation *>();
    QVERIFY(fade);
    fade->pause();
    fade->setCurrentTime(milliseconds);
}

QColor centreOf(const Layer &layer)
{
    const QImage image = painted({20, 20}, [&](QPainter &painter) { layer.draw(painter, {0, 0, 20, 20}); });
    return image.pixelColor(10, 10);
}
} // namespace

class LayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void gravityPlacesTheContents_data();
    void gravityPlacesTheContents();
    void nothingIsDrawnOutsideTheBounds();
    void anEmptyLayerDrawsNothing();
    void roundedCornersAreCutWhenMasking();
    void cornersStayWithoutMasking();
    void contentsChangeAtOnceWithoutATransition();
    void transitionFadesFromTheOldToTheNew();
    void halfwayBothAreMixed();
    void twoOpaqueContentsStayOpaqueOnTheWay();
    void fadeToNothing();
    void easesInAndOut();
    void linearTransitionIsEven();
    void interruptedFadeGoesOnFromWhatIsSeen();
    void reducedMotionChangesAtOnce();
    void sameContentsStartNoFade();
    void transitionServesLaterChangesToo();
    void transitionsAreFoundByTheirKey();
    void everyChangeAsksForDisplay();
    void layerMayGoDuringAFade();
};

void LayerTest::gravityPlacesTheContents_data()
{
    QTest::addColumn<ContentsGravity>("gravity");
    QTest::addColumn<QRect>("covered"); // of bounds of 40 by 20 by a square of 10
    QTest::newRow("resize") << ContentsGravity::Resize << QRect(0, 0, 40, 20);
    QTest::newRow("aspect") << ContentsGravity::ResizeAspect << QRect(10, 0, 20, 20);
    QTest::newRow("aspect fill") << ContentsGravity::ResizeAspectFill << QRect(0, 0, 40, 20);
    QTest::newRow("center") << ContentsGravity::Center << QRect(15, 5, 10, 10);
}

void LayerTest::gravityPlacesTheContents()
{
    QFETCH(ContentsGravity, gravity);
    QFETCH(QRect, covered);
    Layer layer;
    layer.setContentsGravity(gravity);
    layer.setContents(solidImage({10, 10}, Qt::red));
    const QImage image = painted({40, 20}, [&](QPainter &painter) { layer.draw(painter, {0, 0, 40, 20}); });
    for (int x = 1; x < 40; x += 2) {
        for (int y = 1; y < 20; y += 2) {
            const QColor expected = covered.contains(x, y) ? Qt::red : Qt::white;
            QVERIFY2(image.pixelColor(x, y) == expected, qPrintable(u"%1, %2"_s.arg(x).arg(y)));
        }
    }
}

void LayerTest::nothingIsDrawnOutsideTheBounds()
{
    Layer layer;
    layer.setContentsGravity(ContentsGravity::ResizeAspectFill);
    layer.setContents(solidImage({10, 40}, Qt::red));
    const QImage image = painted({40, 40}, [&](QPainter &painter) { layer.draw(painter, {10, 10, 20, 20}); });
    QCOMPARE(image.pixelColor(20, 9), QColor(Qt::white));
    QCOMPARE(image.pixelColor(20, 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(20, 29), QColor(Qt::red));
    QCOMPARE(image.pixelColor(20, 30), QColor(Qt::white));
}

void LayerTest::anEmptyLayerDrawsNothing()
{
    const Layer layer;
    QCOMPARE(centreOf(layer), QColor(Qt::white));
    Layer pictureless;
    pictureless.setContents(Image(QImage()));
    QCOMPARE(centreOf(pictureless), QColor(Qt::white));
}

void LayerTest::roundedCornersAreCutWhenMasking()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::red));
    layer.setCornerRadius(6);
    layer.setMasksToBounds(true);
    const QImage image = painted(
        {20, 20},
        [&](QPainter &painter) {
            layer.draw(painter, {0, 0, 20, 20});
        },
        2);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(39, 39), QColor(Qt::white));
    QCOMPARE(image.pixelColor(20, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
    // The edge of the corner is smooth: some pixel is neither.
    bool smooth = false;
    for (int x = 0; x < 12; ++x)
        smooth |= image.pixelColor(x, 1) != QColor(Qt::red) && image.pixelColor(x, 1) != QColor(Qt::white);
    QVERIFY(smooth);
}

void LayerTest::cornersStayWithoutMasking()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::red));
    layer.setCornerRadius(6);
    const QImage image = painted({20, 20}, [&](QPainter &painter) { layer.draw(painter, {0, 0, 20, 20}); });
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
}

void LayerTest::contentsChangeAtOnceWithoutATransition()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::red));
    QCOMPARE(layer.fadeProgress(), 1.0);
    QCOMPARE(centreOf(layer), QColor(Qt::red));
}

void LayerTest::transitionFadesFromTheOldToTheNew()
{
    Layer layer;
    const Image fresh = solidImage({20, 20}, Qt::blue);
    layer.setContents(solidImage({20, 20}, Qt::red));
    layer.addAnimation(Transition{}, Key);
    layer.setContents(fresh);
    QVERIFY(layer.contents() == fresh); // read back, it is the new one at once
    QCOMPARE(layer.fadeProgress(), 0.0);
    QCOMPARE(centreOf(layer), QColor(Qt::red));
    QTRY_COMPARE(layer.fadeProgress(), 1.0);
    QCOMPARE(centreOf(layer), QColor(Qt::blue));
}

void LayerTest::halfwayBothAreMixed()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::red));
    layer.addAnimation(Transition{}, Key);
    layer.setContents(solidImage({20, 20}, Qt::blue));
    holdFadeAt(layer, 125);
    QVERIFY(qAbs(layer.fadeProgress() - 0.5) < 0.01);
    QVERIFY(isNear(centreOf(layer), QColor(128, 0, 128)));
}

void LayerTest::twoOpaqueContentsStayOpaqueOnTheWay()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::black));
    layer.addAnimation(Transition{}, Key);
    layer.setContents(solidImage({20, 20}, QColor(1, 1, 1)));
    holdFadeAt(layer, 125);
    QVERIFY(isNear(centreOf(layer), Qt::black)); // the white ground does not shine through
}

void LayerTest::fadeToNothing()
{
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::black));
    layer.addAnimation(Transition{}, Key);
    layer.setContents(std::nullopt);
    QVERIFY(!layer.contents());
    holdFadeAt(layer, 125);
    QVERIFY(isNear(centreOf(layer), QColor(127, 127, 127)));
    layer.findChild<QVariantAnimation *>()->resume();
    QTRY_COMPARE(centreOf(layer), QColor(Qt::white));
}

void LayerTest::easesInAndOut()
{
    Layer layer;
    layer.addAnimation(Transition{}, Key);
    layer.setContents(solidImage({20, 20}, Qt::red));
    QCOMPARE(layer.findChild<QVariantAnimation *>()->duration(), 250);
    holdFadeAt(layer, 50);
    QVERIFY(layer.fadeProgress() > 0.05 && layer.fadeProgress() < 0.15);
    holdFadeAt(layer, 200);
    QVERIFY(layer.fadeProgress() > 0.85 && layer.fadeProgress() < 0.95);
}

void LayerTest::linearTransitionIsEven()
{
    Layer layer;
    layer.addAnimation({Transition::Type::Fade, 1000ms, TimingFunction::Linear}, Key);
    layer.setContents(solidImage({20, 20}, Qt::red));
    holdFadeAt(layer, 200);
    QVERIFY(qAbs(layer.fadeProgress() - 0.2) < 0.001);
}

void LayerTest::interruptedFadeGoesOnFromWhatIsSeen()
{
    Layer layer;
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

void LayerTest::reducedMotionChangesAtOnce()
{
    Animator::setReducedMotion(true);
    Layer layer;
    layer.setContents(solidImage({20, 20}, Qt::red));
    layer.addAnimation(Transition{}, Key);
    layer.setContents(solidImage({20, 20}, Qt::blue));
    QCOMPARE(layer.fadeProgress(), 1.0);
    QCOMPARE(centreOf(layer), QColor(Qt::blue));
}

void LayerTest::sameContentsStartNoFade()
{
    Layer layer;
    const Image image = solidImage({20, 20}, Qt::red);
    layer.setContents(image);
    layer.addAnimation(Transition{}, Key);
    layer.setContents(image);
    QCOMPARE(layer.fadeProgress(), 1.0);
    QVERIFY(!layer.findChild<QVariantAnimation *>());
}

void LayerTest::transitionServesLaterChangesToo()
{
    Layer layer;
    layer.addAnimation({Transition::Type::Fade, 1ms, TimingFunction::Linear}, Key);
    layer.setContents(solidImage({20, 20}, Qt::red));
    QTRY_COMPARE(layer.fadeProgress(), 1.0);
    layer.setContents(std::nullopt);
    QCOMPARE(layer.fadeProgress(), 0.0);
}

void LayerTest::transitionsAreFoundByTheirKey()
{
    Layer layer;
    QVERIFY(!layer.animation(Key));
    layer.addAnimation({Transition::Type::Fade, 70ms, TimingFunction::Linear}, Key);
    QVERIFY(!layer.animation(u"other"_s));
    QCOMPARE(layer.animation(Key).value().duration, 70ms);
    // One under another key is kept, but is not for the contents.
    Layer other;
    other.addAnimation(Transition{}, u"other"_s);
    other.setContents(solidImage({20, 20}, Qt::red));
    QCOMPARE(other.fadeProgress(), 1.0);
}

void LayerTest::everyChangeAsksForDisplay()
{
    Layer layer;
    QSignalSpy asked(&layer, &Layer::needsDisplay);
    layer.setContents(solidImage({20, 20}, Qt::red));
    QCOMPARE(asked.count(), 1);
    layer.setCornerRadius(3);
    layer.setMasksToBounds(true);
    layer.setContentsGravity(ContentsGravity::Center);
    QCOMPARE(asked.count(), 4);
    QCOMPARE(layer.cornerRadius(), 3.0);
    QVERIFY(layer.masksToBounds());
    QCOMPARE(layer.contentsGravity(), ContentsGravity::Center);
}

void LayerTest::layerMayGoDuringAFade()
{
    auto layer = std::make_unique<Layer>();
    layer->addAnimation(Transition{}, Key);
    layer->setContents(solidImage({20, 20}, Qt::red));
    const QPointer<QVariantAnimation> fade = layer->findChild<QVariantAnimation *>();
    QVERIFY(fade);
    layer.reset();
    QVERIFY(!fade);
}

QTEST_MAIN(LayerTest)
#include "LayerTest.moc"
