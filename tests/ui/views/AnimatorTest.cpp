#include "Painted.h"
#include "RunningAnimation.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>

#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace
{
/// A window with one button that counts its clicks.
struct Scene
{
    Scene()
    {
        window.resize(200, 100);
        button.setGeometry(20, 20, 100, 40);
        QObject::connect(&button, &QPushButton::clicked, &window, [this] { ++clicks; });
        window.show();
    }

    QWidget window;
    QPushButton button{QStringLiteral("Cancel"), &window};
    int clicks = 0;
};

} // namespace

class AnimatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void hiddenStateIsTheNewOneAtOnce()
    {
        Scene scene;
        Animator::setHidden(scene.button, true);
        QVERIFY(scene.button.isHidden());
        Animator::setHidden(scene.button, false);
        QVERIFY(!scene.button.isHidden());
        QVERIFY(scene.button.isVisible());
    }

    void aViewThatFadesOutTakesNoClicks()
    {
        Scene scene;
        const QPoint middle = scene.button.geometry().center();
        Animator::setHidden(scene.button, true);
        QVERIFY(runningAnimation(scene.window));
        QCOMPARE(scene.window.childAt(middle), nullptr); // what still shows there takes nothing
        QTest::mouseClick(&scene.window, Qt::LeftButton, {}, middle);
        QTest::mouseClick(scene.window.windowHandle(), Qt::LeftButton, {}, middle);
        QCOMPARE(scene.clicks, 0);
    }

    void aViewThatFadesInTakesClicks()
    {
        Scene scene;
        scene.button.hide();
        const QPoint middle = scene.button.geometry().center();
        Animator::setHidden(scene.button, false);
        QVERIFY(runningAnimation(scene.window));
        QCOMPARE(scene.window.childAt(middle), &scene.button);
        QTest::mouseClick(scene.window.windowHandle(), Qt::LeftButton, {}, middle);
        QCOMPARE(scene.clicks, 1);
    }

    void hidingFadesTheOldLookAway()
    {
        QWidget window;
        window.resize(60, 60);
        window.setPalette(QPalette(Qt::white));
        ImageView square(&window);
        square.setGeometry(10, 10, 40, 40);
        square.setImage(solidImage({40, 40}, Qt::red));
        window.show();
        const QColor ground = window.grab().toImage().pixelColor(2, 2);

        Animator::setHidden(square, true);
        QCOMPARE(window.grab().toImage().pixelColor(30, 30), QColor(Qt::red));
        auto *fade = runningAnimation(window);
        QVERIFY(fade);
        QCOMPARE(fade->duration(), 250);
        fade->pause();
        fade->setCurrentTime(125);
        const QColor halfway = window.grab().toImage().pixelColor(30, 30);
        QVERIFY(isNear(halfway, QColor((255 + ground.red()) / 2, ground.green() / 2, ground.blue() / 2)));
        fade->resume();
        QTRY_COMPARE(window.grab().toImage().pixelColor(30, 30), ground);
        QTRY_VERIFY(!window.findChild<QVariantAnimation *>()); // nothing stays behind
    }

    void aFadeTurnedBackEndsInTheLastState()
    {
        Scene scene;
        Animator::setHidden(scene.button, true);
        Animator::setHidden(scene.button, false);
        Animator::setHidden(scene.button, true);
        QVERIFY(scene.button.isHidden());
        QTRY_VERIFY(!runningAnimation(scene.window));
        QVERIFY(scene.button.isHidden());
    }

    void sameStateStartsNothing()
    {
        Scene scene;
        Animator::setHidden(scene.button, false);
        QVERIFY(!runningAnimation(scene.window));
        QVERIFY(scene.button.isVisible());
    }

    void aViewThatIsNotOnScreenChangesAtOnce()
    {
        QWidget window;
        QPushButton button(&window);
        Animator::setHidden(button, true);
        QVERIFY(button.isHidden());
        QVERIFY(!runningAnimation(window));
        window.show();
        QVERIFY(!button.isVisible());
        Animator::setHidden(button, false);
        QVERIFY(button.isVisible());
    }

    void reducedMotionHidesAtOnce()
    {
        Animator::setReducedMotion(true);
        Scene scene;
        Animator::setHidden(scene.button, true);
        QVERIFY(scene.button.isHidden());
        QVERIFY(!runningAnimation(scene.window));
    }

    void viewMayGoDuringAFade()
    {
        QWidget window;
        window.resize(100, 100);
        auto button = std::make_unique<QPushButton>(&window);
        window.show();
        Animator::setHidden(*button, true);
        QVERIFY(runningAnimation(window));
        button.reset();
        QTRY_VERIFY(!window.findChild<QVariantAnimation *>());
    }

    void windowMayGoDuringAFade()
    {
        auto scene = std::make_unique<Scene>();
        Animator::setHidden(scene->button, true);
        const QPointer<QVariantAnimation> fade = runningAnimation(scene->window);
        QVERIFY(fade);
        scene.reset();
        QVERIFY(!fade);
    }

    void aViewInALayoutFadesAtItsPlace()
    {
        QWidget window;
        QVBoxLayout layout(&window);
        QPushButton above(QStringLiteral("Above"));
        QPushButton below(QStringLiteral("Below"));
        layout.addWidget(&above);
        layout.addWidget(&below);
        window.resize(200, 200);
        window.show();
        Animator::setHidden(above, true);
        Animator::setHidden(above, false);
        QVERIFY(above.geometry().bottom() < below.geometry().top());
        QCOMPARE(layout.count(), 2);
    }

    void preferenceCanBeSetForTests()
    {
        QVERIFY(!Animator::prefersReducedMotion());
        Animator::setReducedMotion(true);
        QVERIFY(Animator::prefersReducedMotion());
    }
};

PLOVENDIX_GUI_TEST(AnimatorTest)
#include "AnimatorTest.moc"
