#include <tests/support/TestMain.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/views/Animator.h>
#include <ui/views/LayoutConstraint.h>

#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVariantAnimation>

namespace
{
/// A view of 400 by 300 with a list, a header that keeps its place, and a panel of 100 with a button.
struct Scene
{
    Scene()
    {
        panel.setObjectName(QStringLiteral("detailView"));
        header.setProperty("keepsTop", true);
        header.setGeometry(10, 0, 50, 80);
        view.setPanelName(QStringLiteral("detailView"));
        view.setPanelHeight(100);
        view.resize(400, 300);
        view.bottomConstraint()->setConstant(-100);
        view.show();
    }

    BottomPanelView view;
    QWidget panel{&view}; // first, so that it has to be raised
    QWidget list{&view};
    QLineEdit header{&view};
    QPushButton button{&panel};
};
} // namespace

class BottomPanelViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Animator::setReducedMotion(true); }
    void cleanup() { Animator::setReducedMotion(std::nullopt); }

    void hiddenPanelLiesBelowTheEdge()
    {
        Scene scene;
        QCOMPARE(scene.panel.geometry(), QRect(0, 300, 400, 100));
        QVERIFY(scene.panel.isHidden());
    }

    void shownPanelStandsAtTheBottomOverTheOthers()
    {
        Scene scene;
        scene.view.bottomConstraint()->setConstant(0);
        QCOMPARE(scene.panel.geometry(), QRect(0, 200, 400, 100));
        QVERIFY(scene.panel.isVisible());
        QCOMPARE(scene.view.childAt(200, 290), &scene.panel);
        scene.view.bottomConstraint()->setConstant(-100);
        QVERIFY(!scene.panel.isVisible());
    }

    void othersFillOrKeepTheirPlace()
    {
        Scene scene;
        QCOMPARE(scene.list.geometry(), QRect(0, 0, 400, 300));
        QCOMPARE(scene.header.geometry(), QRect(10, 0, 380, 80));
    }

    void everythingFollowsTheSize()
    {
        Scene scene;
        scene.view.bottomConstraint()->setConstant(0);
        scene.view.resize(600, 500);
        QCOMPARE(scene.panel.geometry(), QRect(0, 400, 600, 100));
        QCOMPARE(scene.list.geometry(), QRect(0, 0, 600, 500));
        QCOMPARE(scene.header.geometry(), QRect(10, 0, 580, 80));
    }

    void panelMovesThroughTheAnimation()
    {
        Animator::setReducedMotion(false);
        Scene scene;
        Animator::setConstant(*scene.view.bottomConstraint(), 0);
        auto *movement = scene.view.bottomConstraint()->findChild<QVariantAnimation *>();
        QVERIFY(movement);
        movement->pause();
        movement->setCurrentTime(125);
        QVERIFY(scene.panel.isVisible());
        QVERIFY(qAbs(scene.panel.y() - 250) <= 1);
        movement->resume();
        QTRY_COMPARE(scene.panel.y(), 200);
    }

    void hiddenPanelTakesNoFocusAndIsNotReadOut()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.view));
        scene.header.setFocus();
        QTest::keyClick(&scene.header, Qt::Key_Tab);
        QVERIFY(!scene.button.hasFocus());
        const auto *accessible = QAccessible::queryAccessibleInterface(&scene.button);
        QVERIFY(accessible->state().invisible);

        scene.view.bottomConstraint()->setConstant(0);
        QVERIFY(!accessible->state().invisible);
        scene.header.setFocus();
        QTest::keyClick(&scene.header, Qt::Key_Tab);
        QVERIFY(scene.button.hasFocus());
    }

    void focusLeavesAPanelThatHides()
    {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowActive(&scene.view));
        scene.view.bottomConstraint()->setConstant(0);
        scene.button.setFocus();
        QVERIFY(scene.button.hasFocus());
        scene.view.bottomConstraint()->setConstant(-100);
        QVERIFY(!scene.button.hasFocus());
    }

    void childrenThatComeLaterAreLaidOut()
    {
        Scene scene;
        scene.view.bottomConstraint()->setConstant(0);
        QWidget late(&scene.view);
        late.show();
        QTRY_COMPARE(late.geometry(), QRect(0, 0, 400, 300));
        QTRY_COMPARE(scene.view.childAt(200, 290), &scene.panel); // still on top
    }

    void withoutANamedPanelAllChildrenFill()
    {
        BottomPanelView view;
        QWidget nameless(&view);
        view.resize(100, 50);
        view.show();
        QCOMPARE(nameless.geometry(), QRect(0, 0, 100, 50));
        QVERIFY(nameless.isVisible());
    }

    void panelWithoutAHeightTakesItsHint()
    {
        BottomPanelView view;
        QPushButton panel(&view);
        panel.setObjectName(QStringLiteral("panel"));
        view.setPanelName(QStringLiteral("panel"));
        view.resize(200, 200);
        view.show();
        QCOMPARE(panel.height(), panel.sizeHint().height());
        QCOMPARE(panel.geometry().bottom(), 199);
    }
};

PLOVENDIX_GUI_TEST(BottomPanelViewTest)
#include "BottomPanelViewTest.moc"
