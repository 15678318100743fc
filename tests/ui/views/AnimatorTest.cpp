#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>

#include <QPushButton>
#include <QVBoxLayout>

namespace
{
/// A window with a red square and a button that counts its clicks.
struct Scene
{
    Scene()
    {
        window.resize(200, 100);
        square.setGeometry(140, 20, 40, 40);
        square.setImage(solidImage({40, 40}, Qt::red));
        button->setGeometry(20, 20, 100, 40);
        QObject::connect(button.get(), &QPushButton::clicked, &window, [this] { ++clicks; });
        window.show();
    }

    QVariantAnimation *fade() { return runningAnimation(window); }
    QColor colorAt(const QPoint &point) { return window.grab().toImage().pixelColor(point); }

    QWidget window;
    ImageView square{&window};
    std::unique_ptr<QPushButton> button = std::make_unique<QPushButton>(&window);
    int clicks = 0;
};
} // namespace

/// How views are shown and hidden; LayoutConstraintTest has the movements.
class AnimatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void aViewThatFadesTakesClicksByItsNewState()
    {
        Scene scene;
        const QPoint middle = scene.button->geometry().center();
        Animator::setHidden(*scene.button, true);
        QVERIFY(scene.button->isHidden());
        QVERIFY(scene.fade());
        QCOMPARE(scene.window.childAt(middle), nullptr); // what still shows there takes nothing
        QTest::mouseClick(scene.window.windowHandle(), Qt::LeftButton, {}, middle);
        QCOMPARE(scene.clicks, 0);
        Animator::setHidden(*scene.button, false);
        QVERIFY(scene.button->isVisible());
        QVERIFY(scene.fade());
        QCOMPARE(scene.window.childAt(middle), scene.button.get());
        QTest::mouseClick(scene.window.windowHandle(), Qt::LeftButton, {}, middle);
        QCOMPARE(scene.clicks, 1);
    }

    void hidingFadesTheOldLookAway()
    {
        Scene scene;
        const QPoint middle = scene.square.geometry().center();
        const QColor ground = scene.colorAt({2, 2});
        Animator::setHidden(scene.square, true);
        QCOMPARE(scene.colorAt(middle), QColor(Qt::red));
        auto *fade = scene.fade();
        QVERIFY(fade);
        QCOMPARE(fade->duration(), 250);
        fade->pause();
        fade->setCurrentTime(125);
        QVERIFY(isNear(scene.colorAt(middle),
                       QColor((255 + ground.red()) / 2, ground.green() / 2, ground.blue() / 2)));
        PaintCounter paints(*qobject_cast<QWidget *>(fade->parent()));
        fade->resume();
        QTRY_VERIFY(paints.count > 2);
        QTRY_COMPARE(scene.colorAt(middle), ground);
        QTRY_VERIFY(!scene.window.findChild<QVariantAnimation *>()); // nothing stays behind

        Animator::setHidden(scene.square, false);
        const QPointer<QVariantAnimation> replaced = scene.fade();
        replaced->pause();
        Animator::setHidden(scene.square, true);
        QTRY_VERIFY(!replaced);
        QTRY_VERIFY(!scene.fade());
        QCOMPARE(scene.colorAt(middle), ground);
    }

    void changeIsAtOnceWithoutMotionOrWindow()
    {
        Scene scene;
        Animator::setHidden(*scene.button, false); // no change
        QVERIFY(!scene.fade());
        Animator::setReducedMotion(true);
        QVERIFY(Animator::prefersReducedMotion());
        Animator::setHidden(*scene.button, true);
        QVERIFY(scene.button->isHidden() && !scene.fade());
        Animator::setReducedMotion(false);
        QVERIFY(!Animator::prefersReducedMotion());
        Animator::setHidden(scene.window, true); // a window has no window to fade in
        QVERIFY(scene.window.isHidden() && !scene.fade());
        Animator::setHidden(*scene.button, false);
        QVERIFY(!scene.button->isHidden() && !scene.fade());
    }

    void viewMayBeDestroyedDuringAFade()
    {
        Scene scene;
        Animator::setHidden(*scene.button, true);
        scene.fade()->pause();
        scene.button.reset();
        QTRY_VERIFY(!scene.window.findChild<QVariantAnimation *>());
    }

    void aViewInALayoutFadesAtItsPlace()
    {
        Scene scene;
        auto *below = new QPushButton;
        auto *layout = new QVBoxLayout(&scene.window);
        layout->addWidget(&scene.square);
        layout->addWidget(below);
        below->show();
        layout->activate();
        const QRect place = scene.square.geometry();
        Animator::setHidden(scene.square, true);
        QVERIFY(below->geometry().intersects(place));
        Animator::setHidden(scene.square, false);
        QVERIFY(!below->geometry().intersects(place));
        QCOMPARE(scene.square.geometry(), place);
        auto *snapshot = qobject_cast<QWidget *>(scene.fade()->parent());
        QVERIFY(snapshot);
        QCOMPARE(snapshot->geometry(), place);
        QCOMPARE(layout->count(), 2);
    }
};

PLOVENDIX_GUI_TEST(AnimatorTest)
#include "AnimatorTest.moc"
