#include <tests/support/TestMain.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/views/LayoutConstraint.h>

#include <QAccessible>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

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
    void panelStandsAtTheBottomOverTheOthersWhenShown()
    {
        Scene scene;
        QCOMPARE(scene.panel.geometry(), QRect(0, 300, 400, 100));
        QVERIFY(scene.panel.isHidden());
        scene.view.bottomConstraint()->setConstant(0);
        QCOMPARE(scene.panel.geometry(), QRect(0, 200, 400, 100));
        QVERIFY(scene.panel.isVisible());
        QCOMPARE(scene.view.childAt(200, 290), &scene.panel);
        scene.view.bottomConstraint()->setConstant(-99.4);
        QCOMPARE(scene.panel.y(), 299);
        QVERIFY(scene.panel.isVisible());
        scene.view.bottomConstraint()->setConstant(-100);
        QVERIFY(!scene.panel.isVisible());
        scene.view.bottomConstraint()->setConstant(0);
        scene.view.resize(600, 500);
        QCOMPARE(scene.panel.geometry(), QRect(0, 400, 600, 100));
        QCOMPARE(scene.list.geometry(), QRect(0, 0, 600, 500));
        QCOMPARE(scene.header.geometry(), QRect(10, 0, 580, 80));
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
        QDialog window(&scene.view);
        window.setGeometry(5, 5, 50, 50);
        scene.view.resize(500, 300);
        QCOMPARE(window.size(), QSize(50, 50));
    }

    void panelIsOptionalAndTakesItsHintForAHeight()
    {
        BottomPanelView view;
        QPushButton panel(&view);
        view.resize(200, 200);
        view.show();
        QCOMPARE(panel.geometry(), QRect(0, 0, 200, 200)); // without a name it is a child like others
        panel.setObjectName(QStringLiteral("panel"));
        view.setPanelName(QStringLiteral("panel"));
        QCOMPARE(panel.height(), panel.sizeHint().height());
        QCOMPARE(panel.geometry().bottom(), 199);
        view.setPanelHeight(50);
        QCOMPARE(panel.height(), 50);
    }
};

PLOVENDIX_GUI_TEST(BottomPanelViewTest)
#include "BottomPanelViewTest.moc"
