#include "RunningAnimation.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/LayoutConstraint.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

class LayoutConstraintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(false); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void constantIsTheNewOneAtOnce()
    {
        LayoutConstraint constraint;
        constraint.setConstant(-168);
        Animator::setConstant(constraint, 0);
        QCOMPARE(constraint.constant(), 0.0);
        QCOMPARE(constraint.presentedConstant(), -168.0);
        QTRY_COMPARE(constraint.presentedConstant(), 0.0);
    }

    void constraintMovesMonotonously()
    {
        LayoutConstraint constraint;
        qreal last = 0;
        bool forwards = true;
        connect(&constraint, &LayoutConstraint::presentedConstantChanged, &constraint, [&](qreal shown) {
            forwards = forwards && shown < last && shown >= -168;
            last = shown;
        });
        Animator::setConstant(constraint, -168);
        QTRY_COMPARE(constraint.presentedConstant(), -168.0);
        QVERIFY(forwards);
    }

    void movementGoesOnFromWhereItIs()
    {
        LayoutConstraint constraint;
        Animator::setConstant(constraint, 100);
        auto *movement = runningAnimation(constraint);
        QVERIFY(movement);
        QCOMPARE(movement->duration(), 250);
        movement->setCurrentTime(125);
        QVERIFY(qAbs(constraint.presentedConstant() - 50) < 1);
        Animator::setConstant(constraint, 0);
        QCOMPARE(constraint.constant(), 0.0);
        QVERIFY(qAbs(constraint.presentedConstant() - 50) < 1);
        QTRY_COMPARE(constraint.presentedConstant(), 0.0);
    }

    void completionRunsOnceWhenTheMovementHasEnded()
    {
        LayoutConstraint constraint;
        int completions = 0;
        qreal shown = -1;
        Animator::setConstant(constraint, 10, 20ms, [&] {
            ++completions;
            shown = constraint.presentedConstant();
        });
        QCOMPARE(completions, 0);
        QTRY_COMPARE(completions, 1);
        QCOMPARE(shown, 10.0);
        QTRY_VERIFY(!constraint.findChild<QVariantAnimation *>());
        QCOMPARE(completions, 1);
    }

    void completionRunsOnceWhenALaterMovementTookOver()
    {
        LayoutConstraint constraint;
        QStringList ended;
        Animator::setConstant(constraint, 10, 1000ms, [&] { ended += QStringLiteral("first"); });
        Animator::setConstant(constraint, 0, 20ms, [&] { ended += QStringLiteral("second"); });
        QCOMPARE(ended, QStringList{QStringLiteral("first")});
        QTRY_COMPARE(ended, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
        QCOMPARE(constraint.presentedConstant(), 0.0);
    }

    void completionRunsWhenTheConstantIsSetOutright()
    {
        LayoutConstraint constraint;
        int completions = 0;
        Animator::setConstant(constraint, 10, 1000ms, [&] { ++completions; });
        constraint.setConstant(5);
        QCOMPARE(completions, 1);
        QCOMPARE(constraint.constant(), 5.0);
        QCOMPARE(constraint.presentedConstant(), 5.0);
        QVERIFY(!runningAnimation(constraint));
    }

    void completionMayStartTheNextMovement()
    {
        LayoutConstraint constraint;
        int completions = 0;
        Animator::setConstant(constraint, 10, 10ms, [&] {
            ++completions;
            Animator::setConstant(constraint, 20, 10ms, [&] { ++completions; });
        });
        QTRY_COMPARE(completions, 2);
        QCOMPARE(constraint.presentedConstant(), 20.0);
    }

    void reducedMotionMovesAtOnceWithItsCompletion()
    {
        Animator::setReducedMotion(true);
        LayoutConstraint constraint;
        int completions = 0;
        Animator::setConstant(constraint, -168, Animator::DefaultDuration, [&] { ++completions; });
        QCOMPARE(completions, 1);
        QCOMPARE(constraint.presentedConstant(), -168.0);
        Animator::setConstant(constraint, 0);
        QCOMPARE(constraint.presentedConstant(), 0.0);
    }

    void noDurationMovesAtOnce()
    {
        LayoutConstraint constraint;
        int completions = 0;
        Animator::setConstant(constraint, 7, 0ms, [&] { ++completions; });
        QCOMPARE(constraint.presentedConstant(), 7.0);
        QCOMPARE(completions, 1);
    }

    void constraintMayGoDuringAMovement()
    {
        auto constraint = std::make_unique<LayoutConstraint>();
        int completions = 0;
        Animator::setConstant(*constraint, 10, 10ms, [&] { ++completions; });
        const QPointer<QVariantAnimation> movement = runningAnimation(*constraint);
        QVERIFY(movement);
        constraint.reset();
        QVERIFY(!movement);
        QCOMPARE(completions, 0);
    }

    void constraintMayGoInItsCompletion()
    {
        auto *constraint = new LayoutConstraint;
        const QPointer<LayoutConstraint> watched = constraint;
        Animator::setConstant(*constraint, 10, 1000ms, [&] { delete watched.data(); });
        constraint->setConstant(3);
        QVERIFY(!watched);
    }

    void changesNotifyOnce()
    {
        LayoutConstraint constraint;
        QSignalSpy targets(&constraint, &LayoutConstraint::constantChanged);
        QSignalSpy shown(&constraint, &LayoutConstraint::presentedConstantChanged);
        constraint.setConstant(4);
        constraint.setConstant(4);
        QCOMPARE(targets.count(), 1);
        QCOMPARE(shown.count(), 1);
        Animator::setConstant(constraint, 0);
        QCOMPARE(targets.count(), 2);
        QTRY_COMPARE(constraint.presentedConstant(), 0.0);
        QCOMPARE(targets.count(), 2);
    }
};

PLOVENDIX_GUI_TEST(LayoutConstraintTest)
#include "LayoutConstraintTest.moc"
