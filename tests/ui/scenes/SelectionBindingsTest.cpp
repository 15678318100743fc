#include "BoundModel.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Bindings.h>

#include <QComboBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
void fillIntervals(QComboBox &comboBox)
{
    comboBox.addItem(u"Hourly"_s, 3600);
    comboBox.addItem(u"Daily"_s, 86400);
    comboBox.insertSeparator(2);
    comboBox.addItem(u"Weekly"_s, 604800);
}
} // namespace

/// The selected item of a pop-up bound to a value.
class SelectionBindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_model = std::make_unique<BoundModel>(); }

    void tagIsSelectedWhateverItsType_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("index");
        QTest::newRow("number") << QVariant(86400) << 1;
        QTest::newRow("long number") << QVariant(604800LL) << 3;
        QTest::newRow("real number") << QVariant(3600.0) << 0;
        QTest::newRow("text") << QVariant(u"86400"_s) << 1;
        QTest::newRow("carried by none") << QVariant(7) << -1;
        QTest::newRow("text carried by none") << QVariant(u"7"_s) << -1;
        QTest::newRow("a fraction") << QVariant(3600.5) << -1;
        QTest::newRow("no number") << QVariant(u"daily"_s) << -1;
        QTest::newRow("empty text") << QVariant(QString()) << -1;
        QTest::newRow("zero, which the separator lacks too") << QVariant(0) << -1;
        QTest::newRow("nothing") << QVariant() << -1;
    }
    void tagIsSelectedWhateverItsType()
    {
        QFETCH(QVariant, value);
        QFETCH(int, index);
        m_model->setAnything(value);
        QComboBox before;
        fillIntervals(before);
        bind(before, Binding::SelectedTag, *m_model, u"anything"_s);
        QCOMPARE(before.currentIndex(), index);
        // A pop-up that is filled later selects its first item by itself.
        QComboBox after;
        bind(after, Binding::SelectedTag, *m_model, u"anything"_s);
        fillIntervals(after);
        QCOMPARE(after.currentIndex(), index);
        QCOMPARE(m_model->writes(), 1);
    }

    void itemsTaggedByTextsMatchNumbers()
    {
        QComboBox comboBox;
        comboBox.addItem(u"Hourly"_s, u"3600"_s);
        comboBox.addItem(u"Daily"_s, u"86400"_s);
        m_model->setAnything(86400);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        QCOMPARE(comboBox.currentIndex(), 1);
    }

    void textsAreNotComparedAsNumbers()
    {
        QComboBox comboBox;
        comboBox.addItem(u"One"_s, u"1"_s);
        comboBox.addItem(u"One, padded"_s, u"01"_s);
        m_model->setAnything(u"01"_s);
        bind(comboBox, Binding::SelectedObject, *m_model, u"anything"_s);
        QCOMPARE(comboBox.currentIndex(), 1);
    }

    void choosingAnItemStoresItsData()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        m_model->setAnything(u"86400"_s);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        QTest::keyClick(&comboBox, Qt::Key_Down);
        QCOMPARE(m_model->anything(), QVariant(604800));
        QCOMPARE(comboBox.currentIndex(), 3);
    }

    void choosingTheItemThatShowsStoresItsData()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        m_model->setAnything(u"86400"_s);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        Q_EMIT comboBox.activated(1);
        QCOMPARE(m_model->anything(), QVariant(86400));
        QCOMPARE(m_model->writes(), 2);
        QCOMPARE(comboBox.currentIndex(), 1);
    }

    void selectionMadeByCodeStoresNothing()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        m_model->setAnything(3600);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        comboBox.setCurrentIndex(1);
        QCOMPARE(m_model->anything(), QVariant(3600));
    }

    void itemRemovedLeavesNothingSelected()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        m_model->setAnything(86400);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        comboBox.removeItem(1);
        QCOMPARE(comboBox.currentIndex(), -1);
        comboBox.clear();
        QCOMPARE(m_model->anything(), QVariant(86400));
    }

    void modelGoingFirstLeavesTheSelection()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        m_model->setAnything(86400);
        bind(comboBox, Binding::SelectedTag, *m_model, u"anything"_s);
        m_model.reset();
        comboBox.addItem(u"Yearly"_s, 31536000);
        QCOMPARE(comboBox.currentIndex(), 1);
        QTest::keyClick(&comboBox, Qt::Key_Down);
        QCOMPARE(comboBox.currentIndex(), 3);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<BoundModel> m_model;
};

PLOVENDIX_GUI_TEST(SelectionBindingsTest)
#include "SelectionBindingsTest.moc"
