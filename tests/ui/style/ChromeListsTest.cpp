#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/ChromePainting.h>
#include <ui/style/ChromeStyle.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QStyleOption>

using namespace Qt::StringLiterals;

/// The style's combo boxes, menus and scroll bars.
class ChromeListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new ChromeStyle); }

    void nothingIsTooNarrowForItsText_data()
    {
        QTest::addColumn<QString>("role");
        QTest::newRow("plain") << QString();
        QTest::newRow("pill") << u"pill"_s;
    }

    void nothingIsTooNarrowForItsText()
    {
        QFETCH(QString, role);
        QWidget parent;
        QComboBox combo(&parent);
        combo.setProperty("role", role);
        combo.addItem(u"Norwegian Bokmål"_s);
        combo.resize(combo.sizeHint());
        QStyleOptionComboBox option;
        option.initFrom(&combo);
        option.currentText = combo.currentText();
        const QRect text =
            combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
        QVERIFY(text.width() >= combo.fontMetrics().horizontalAdvance(combo.currentText()));
        QVERIFY(combo.rect().contains(text));
    }

    void scrollBarHandle_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("value");
        QTest::addColumn<QRect>("handle");
        QTest::newRow("at the top") << 300 << 0 << QRect(0, 0, 10, 50);
        QTest::newRow("at the bottom") << 300 << 300 << QRect(0, 150, 10, 50);
        QTest::newRow("halfway") << 300 << 150 << QRect(0, 75, 10, 50);
        QTest::newRow("never too small to hit") << 1000000 << 0 << QRect(0, 0, 10, 28);
        QTest::newRow("nothing to scroll") << 0 << 0 << QRect(0, 0, 10, 200);
    }

    void scrollBarHandle()
    {
        QFETCH(int, maximum);
        QFETCH(int, value);
        QFETCH(QRect, handle);
        QStyleOptionSlider option;
        option.rect = QRect(0, 0, 10, 200);
        option.orientation = Qt::Vertical;
        option.minimum = 0;
        option.maximum = maximum;
        option.pageStep = 100;
        option.sliderPosition = value;
        QCOMPARE(ChromePainting::scrollBarSlider(option), handle);
    }

    void scrollBarHasNoArrows()
    {
        QWidget parent;
        QScrollBar bar(Qt::Vertical, &parent);
        bar.setRange(0, 1000);
        bar.setPageStep(100);
        bar.setSingleStep(1);
        bar.resize(10, 200);
        bar.setValue(500);
        QCOMPARE(bar.sizeHint().width(), 10);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 2});
        QVERIFY2(bar.value() < 499, "A click at the end went one step, as on an arrow");
    }

    void scrollBarLiesOverTheContent()
    {
        QListWidget list;
        list.setFrameShape(QFrame::NoFrame);
        for (int i = 0; i < 100; ++i)
            list.addItem(u"Harbour Lights"_s);
        list.resize(200, 100);
        list.show();
        QTRY_VERIFY(list.verticalScrollBar()->isVisible());
        QCOMPARE(list.viewport()->width(), list.width());
        // It can be reached there.
        QVERIFY(list.verticalScrollBar()->isAncestorOf(list.childAt(195, 50)) ||
                list.verticalScrollBar() == list.childAt(195, 50));
    }

    void menuKeepsTextAndShortcutApart()
    {
        QMenu menu;
        QAction *action = menu.addAction(u"Save As…"_s);
        action->setShortcut(QKeySequence(u"Ctrl+Shift+S"_s));
        menu.ensurePolished();
        const QFontMetrics metrics(menu.font());
        const int texts =
            metrics.horizontalAdvance(u"Save As…"_s) + metrics.horizontalAdvance(u"Ctrl+Shift+S"_s);
        QVERIFY(menu.sizeHint().width() > texts + 20);
    }

    void listOfAComboBoxShowsAllItsRowsAndLowSeparators()
    {
        QComboBox combo;
        combo.addItems({u"Every hour"_s, u"Every day"_s});
        combo.insertSeparator(1);
        combo.show();
        combo.showPopup();
        const QAbstractItemView *list = combo.view();
        const auto row = [&](int number) { return list->visualRect(combo.model()->index(number, 0)); };
        QTRY_VERIFY(list->isVisible());
        QVERIFY(!list->verticalScrollBar()->isVisible());
        QVERIFY(list->viewport()->rect().contains(row(2)));
        QVERIFY(row(0).height() >= 26);
        QVERIFY(row(1).height() < 12);
        combo.hidePopup();
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ChromeListsTest)
#include "ChromeListsTest.moc"
