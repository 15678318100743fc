#include "Painted.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>
#include <ui/views/LayoutConstraint.h>

#include <QSignalSpy>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// The constraint, and its movement by the Animator.
class LayoutConstraintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Animator::setReducedMotion(false);
        m_constraint = std::make_unique<LayoutConstraint>();
        m_ended.clear();
    }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void movementEasesInAndOut()
    {
        QSignalSpy targets(m_constraint.get(), &LayoutConstraint::constantChanged);
        QSignalSpy shown(m_constraint.get(), &LayoutConstraint::presentedConstantChanged);
        Animator::setConstant(*m_constraint, -100);
        QCOMPARE(m_constraint->constant(), -100.0);
        QCOMPARE(m_constraint->presentedConstant(), 0.0);
        auto *movement = runningAnimation(*m_constraint);
        QVERIFY(movement);
        QCOMPARE(movement->duration(), 250);
        movement->pause();
        const QList<std::pair<int, qreal>> course{{50, -8.2}, {125, -50}, {200, -91.8}, {250, -100}};
        for (const auto &[moment, constant] : course) {
            movement->setCurrentTime(moment);
            const qreal there = m_constraint->presentedConstant();
            QVERIFY2(qAbs(there - constant) < 0.1, qPrintable(QString::number(there)));
        }
        QVERIFY(!runningAnimation(*m_constraint));
        QCOMPARE(targets.count(), 1);
        QCOMPARE(shown.count(), course.size());
    }

    void completionRunsOnceWhenTheMovementHasEnded()
    {
        qreal shown = -1;
        Animator::setConstant(*m_constraint, 10, 20ms, [&] {
            shown = m_constraint->presentedConstant();
            end(u"first"_s)();
        });
        QCOMPARE(runningAnimation(*m_constraint)->duration(), 20);
        QCOMPARE(m_ended, QStringList());
        QTRY_COMPARE(m_ended, QStringList({u"first"_s}));
        QCOMPARE(shown, 10.0);
        m_constraint->setConstant(20);
        QCOMPARE(m_ended, QStringList({u"first"_s}));
    }

    void laterMovementGoesOnFromWhereItIs()
    {
        Animator::setConstant(*m_constraint, 100, 1000ms, end(u"first"_s));
        runningAnimation(*m_constraint)->setCurrentTime(500);
        Animator::setConstant(*m_constraint, 0, 20ms, end(u"second"_s));
        QCOMPARE(m_ended, QStringList({u"first"_s}));
        QVERIFY(qAbs(m_constraint->presentedConstant() - 50) < 1);
        QTRY_COMPARE(m_ended, QStringList({u"first"_s, u"second"_s}));
        QCOMPARE(m_constraint->presentedConstant(), 0.0);
    }

    void completionMayStartTheNextMovement()
    {
        Animator::setConstant(*m_constraint, 10, 10ms,
                              [this] { Animator::setConstant(*m_constraint, 20, 10ms, end(u"second"_s)); });
        QTRY_COMPARE(m_ended, QStringList({u"second"_s}));
        QCOMPARE(m_constraint->presentedConstant(), 20.0);
    }

    void changeAtOnceEndsTheMovement_data()
    {
        QTest::addColumn<bool>("reducedMotion");
        QTest::addColumn<std::chrono::milliseconds>("duration");
        QTest::newRow("no duration") << false << 0ms;
        QTest::newRow("reduced motion") << true << 250ms;
    }
    void changeAtOnceEndsTheMovement()
    {
        QFETCH(bool, reducedMotion);
        QFETCH(std::chrono::milliseconds, duration);
        QSignalSpy targets(m_constraint.get(), &LayoutConstraint::constantChanged);
        QSignalSpy shown(m_constraint.get(), &LayoutConstraint::presentedConstantChanged);
        Animator::setConstant(*m_constraint, 10, 1000ms, end(u"movement"_s));
        Animator::setReducedMotion(reducedMotion);
        Animator::setConstant(*m_constraint, 5, duration, end(u"change"_s));
        QCOMPARE(m_ended, QStringList({u"movement"_s, u"change"_s}));
        QCOMPARE(m_constraint->constant(), 5.0);
        QCOMPARE(m_constraint->presentedConstant(), 5.0);
        QVERIFY(!runningAnimation(*m_constraint));
        m_constraint->setConstant(5);
        QCOMPARE(targets.count(), 2);
        QCOMPARE(shown.count(), 1);
    }

    void constraintMayBeDestroyed()
    {
        Animator::setConstant(*m_constraint, 10, 10ms, end(u"never"_s));
        m_constraint = std::make_unique<LayoutConstraint>();
        Animator::setConstant(*m_constraint, 10, 1000ms, [this] { m_constraint.reset(); });
        m_constraint->setConstant(3);
        QVERIFY(!m_constraint);
        QCOMPARE(m_ended, QStringList());
    }

private:
    std::function<void()> end(const QString &name)
    {
        return [this, name] { m_ended += name; };
    }

    std::unique_ptr<LayoutConstraint> m_constraint;
    QStringList m_ended; // the completions that ran
};

PLOVENDIX_GUI_TEST(LayoutConstraintTest)
#include "LayoutConstraintTest.moc"
