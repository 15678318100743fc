#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/BusyIndicator.h>

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

class BusyIndicatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsOnlyWhileVisible()
    {
        QWidget parent;
        auto *indicator = new BusyIndicator(&parent);
        QVERIFY(!indicator->isSpinning());
        parent.show();
        QVERIFY(indicator->isSpinning());
        indicator->hide();
        QVERIFY(!indicator->isSpinning());
        indicator->show();
        QVERIFY(indicator->isSpinning());
        parent.hide();
        QVERIFY(!indicator->isSpinning());
    }

    void pictureChangesWhileItTurns()
    {
        BusyIndicator indicator;
        indicator.resize(indicator.sizeHint());
        indicator.show();
        const QImage first = indicator.grab().toImage();
        QTRY_VERIFY(indicator.grab().toImage() != first);
    }

    void saysWhatItMeans()
    {
        BusyIndicator indicator;
        const auto name = [&indicator] {
            return QAccessible::queryAccessibleInterface(&indicator)->text(QAccessible::Name);
        };
        QCOMPARE(name(), u"Searching"_s);
        indicator.setAccessibleName(u"Downloading"_s);
        QCOMPARE(name(), u"Downloading"_s);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(BusyIndicatorTest)
#include "BusyIndicatorTest.moc"
