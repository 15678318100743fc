#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/views/Animator.h>
#include <ui/views/LayoutConstraint.h>

#include <QScrollBar>
#include <QVariantAnimation>

using namespace Qt::StringLiterals;

/// How the panel comes and goes where the desktop wants motion. Time is what the test sets the movement to.
class PanelMovementTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        Animator::setReducedMotion(false);
    }
    void cleanup() { m_view.reset(); }

    void panelIsShownInAQuarterOfASecond()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(0);
        QVERIFY(movement());
        QCOMPARE(movement()->duration(), 250);
        QCOMPARE(constraint()->presentedConstant(), -168.0);
        finishMovement();
        QCOMPARE(constraint()->presentedConstant(), 0.0);
        QVERIFY(!movement());
    }

    void panelIsHiddenInAQuarterOfASecond()
    {
        showPanel();
        m_view->table()->deselectAll();
        QCOMPARE(constraint()->constant(), -168.0);
        QCOMPARE(constraint()->presentedConstant(), 0.0);
        QCOMPARE(m_view->widget("scrollView")->contentsMargins(), QMargins(0, 80, 0, 0));
        QVERIFY(movement());
        QCOMPARE(movement()->duration(), 250);
        finishMovement();
        QCOMPARE(constraint()->presentedConstant(), -168.0);
    }

    void panelIsHiddenAnimatedWhenTheResultsAreCleared()
    {
        showPanel();
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(movement());
        QCOMPARE(movement()->endValue().toReal(), -168.0);
        QCOMPARE(constraint()->presentedConstant(), 0.0);
    }

    void rowIsScrolledToAfterTheMovementOnly()
    {
        selectOutOfSight();
        QVERIFY(movement());
        movement()->setCurrentTime(movement()->duration() - 1);
        m_view->turn();
        QCOMPARE(bar()->value(), 0);
        finishMovement();
        m_view->turn();
        QVERIFY(bar()->value() > 0);
        const QRect row = m_view->table()->visualRect(m_view->table()->model()->index(30, 0));
        QVERIFY(m_view->table()->viewport()->rect().contains(row));
    }

    void rowIsScrolledToOnATurnOfItsOwn()
    {
        selectOutOfSight();
        finishMovement();
        QCOMPARE(bar()->value(), 0);
        m_view->turn();
        QVERIFY(bar()->value() > 0);
    }

    void nothingIsScrolledToWhenThePanelIsHidden()
    {
        showPanel();
        bar()->setValue(bar()->maximum() / 2);
        const int before = bar()->value();
        QVERIFY(before > 0);
        m_view->table()->deselectAll();
        finishMovement();
        m_view->turn();
        QCOMPARE(bar()->value(), before);
    }

private:
    LayoutConstraint *constraint() const
    {
        return static_cast<BottomPanelView *>(m_view->controller->view())->bottomConstraint();
    }
    /// The panel's movement under way, or nothing.
    QVariantAnimation *movement() const
    {
        const auto movements = constraint()->findChildren<QVariantAnimation *>();
        for (QVariantAnimation *candidate : movements) {
            if (candidate->state() == QAbstractAnimation::Running)
                return candidate;
        }
        return nullptr;
    }
    void finishMovement() const
    {
        QVERIFY(movement());
        movement()->setCurrentTime(movement()->duration());
    }
    QScrollBar *bar() const { return m_view->table()->verticalScrollBar(); }
    /// Selects a row far down and scrolls away from it again, while the panel begins to move.
    void selectOutOfSight() const
    {
        m_view->showResults(50);
        m_view->table()->selectRow(30);
        bar()->setValue(0);
    }
    /// Selects a row and has the panel come to rest.
    void showPanel() const
    {
        m_view->showResults(50);
        m_view->table()->selectRow(0);
        finishMovement();
        m_view->turn();
    }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(PanelMovementTest)
#include "PanelMovementTest.moc"
