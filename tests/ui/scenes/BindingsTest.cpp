#include "BoundModel.h"

#include <base/ValueTransformer.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/scenes/Bindings.h>

#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Codes in capitals on screen, in small letters in the model; "?" has nothing behind it.
class Capitals : public ValueTransformer
{
public:
    QVariant transformedValue(const QVariant &value) const override { return value.toString().toUpper(); }
    QVariant reverseTransformedValue(const QVariant &value) const override
    {
        return value.toString() == u"?" ? QVariant() : QVariant(value.toString().toLower());
    }
    bool allowsReverseTransformation() const override { return true; }
};

class OneWay : public ValueTransformer
{
public:
    QVariant transformedValue(const QVariant &value) const override
    {
        return QString(u"language "_s + value.toString());
    }
    bool allowsReverseTransformation() const override { return false; }
};

} // namespace

class BindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ValueTransformer::setValueTransformer(std::make_shared<Capitals>(), u"Capitals"_s);
        ValueTransformer::setValueTransformer(std::make_shared<OneWay>(), u"OneWay"_s);
    }
    void init() { m_model = std::make_unique<BoundModel>(); }

    void checkBoxFollowsAndIsFollowed()
    {
        QCheckBox checkBox;
        bind(checkBox, Binding::Value, *m_model, u"flag"_s);
        QVERIFY(!checkBox.isChecked());
        m_model->setFlag(true);
        QVERIFY(checkBox.isChecked());
        checkBox.click();
        QVERIFY(!m_model->flag());
    }

    void checkBoxToggledByAnAssistiveToolIsFollowed()
    {
        QCheckBox checkBox;
        bind(checkBox, Binding::Value, *m_model, u"flag"_s);
        auto *actions = QAccessible::queryAccessibleInterface(&checkBox)->actionInterface();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(m_model->flag());
    }

    void negatedCheckBoxShowsAndStoresTheOpposite()
    {
        QCheckBox checkBox;
        bind(checkBox, Binding::Value, *m_model, u"flag"_s, {.negate = true});
        QVERIFY(checkBox.isChecked());
        checkBox.click();
        QVERIFY(m_model->flag());
        m_model->setFlag(false);
        QVERIFY(checkBox.isChecked());
    }

    void valueThatGoesAwayIsShownAsANoAndNotStored()
    {
        m_model->setAnything(true);
        QCheckBox checkBox;
        bind(checkBox, Binding::Value, *m_model, u"anything"_s);
        m_model->setAnything({});
        QVERIFY(!checkBox.isChecked());
        QCOMPARE(m_model->anything(), QVariant());
    }

    void booleanAspectsReadAnyValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("expected");
        QTest::newRow("nothing") << QVariant() << false;
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("1") << QVariant(1) << true;
        QTest::newRow("0") << QVariant(0) << false;
        QTest::newRow("text true") << QVariant(u"true"_s) << true;
        QTest::newRow("text YES") << QVariant(u"YES"_s) << true;
        QTest::newRow("text NO") << QVariant(u"NO"_s) << false;
        QTest::newRow("text false") << QVariant(u"false"_s) << false;
        QTest::newRow("text 1") << QVariant(u"1"_s) << true;
        QTest::newRow("text 0") << QVariant(u"0"_s) << false;
        QTest::newRow("empty text") << QVariant(QString()) << false;
    }
    void booleanAspectsReadAnyValue()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, expected);
        m_model->setAnything(value);
        QCheckBox checkBox;
        bind(checkBox, Binding::Value, *m_model, u"anything"_s);
        QCOMPARE(checkBox.isChecked(), expected);
        QWidget control;
        bind(control, Binding::Enabled, *m_model, u"anything"_s, {.negate = true});
        QCOMPARE(control.isEnabled(), !expected);
    }

    void enabledFollowsLive()
    {
        QPushButton button;
        bind(button, Binding::Enabled, *m_model, u"flag"_s, {.negate = true});
        QVERIFY(button.isEnabled());
        m_model->setFlag(true);
        QVERIFY(!button.isEnabled());
    }

    void hiddenFollowsLive()
    {
        QWidget window;
        auto *button = new QPushButton(&window);
        bind(*button, Binding::Hidden, *m_model, u"flag"_s);
        window.show();
        QVERIFY(button->isVisible());
        m_model->setFlag(true);
        QVERIFY(!button->isVisible());
        m_model->setFlag(false);
        QVERIFY(button->isVisible());
    }

    void fieldShowsTheTextAndStoresAFinishedEdit()
    {
        QLineEdit field;
        m_model->setText(u"old"_s);
        bind(field, Binding::Value, *m_model, u"text"_s);
        QCOMPARE(field.text(), u"old"_s);
        field.selectAll();
        QTest::keyClicks(&field, u"new"_s);
        QCOMPARE(m_model->text(), u"old"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->text(), u"new"_s);
    }

    void fieldKeepsItsCaretWhenTheSameTextIsStored()
    {
        QLineEdit field;
        bind(field, Binding::Value, *m_model, u"text"_s);
        QTest::keyClicks(&field, u"abc"_s);
        field.setCursorPosition(1);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(field.cursorPosition(), 1);
        QCOMPARE(m_model->text(), u"abc"_s);
    }

    void valueThatTheModelRefusesIsShownAsItIs()
    {
        QLineEdit field;
        bind(field, Binding::Value, *m_model, u"atMostTen"_s);
        QTest::keyClicks(&field, u"99"_s);
        field.selectAll();
        QTest::keyClicks(&field, u"25"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->atMostTen(), 10);
        QCOMPARE(field.text(), u"10"_s);
    }

    void titlesAreTextsNotMnemonicsNorMarkup()
    {
        m_model->setText(u"<i>Rock</i> & Roll"_s);
        QPushButton button;
        QGroupBox groupBox;
        QLabel label;
        ui::Label plainLabel;
        bind(button, Binding::Title, *m_model, u"text"_s);
        bind(groupBox, Binding::Title, *m_model, u"text"_s);
        bind(label, Binding::Title, *m_model, u"text"_s);
        bind(plainLabel, Binding::Title, *m_model, u"text"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name), m_model->text());
        QCOMPARE(groupBox.title(), u"<i>Rock</i> && Roll"_s);
        QCOMPARE(label.text(), m_model->text());
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QCOMPARE(plainLabel.text(), m_model->text());
        m_model->setText(u"Jazz"_s);
        QCOMPARE(button.text(), u"Jazz"_s);
        QCOMPARE(plainLabel.text(), u"Jazz"_s);
    }

    void labelShowsADateAsTheRegionWritesIt()
    {
        const QDateTime time(QDate(2024, 3, 1), QTime(14, 5), Qt::UTC);
        m_model->setAnything(time);
        ui::Label label;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        bind(label, Binding::Value, *m_model, u"anything"_s);
        const QString german = label.text();
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        m_model->setAnything(time.addSecs(60));
        const QString american = label.text();
        QLocale::setDefault(QLocale::system());
        QVERIFY2(german.contains(u"1. März 2024"_s), qPrintable(german));
        QVERIFY2(american.contains(u"March 1, 2024"_s), qPrintable(american));
        QVERIFY2(american.contains(time.toLocalTime().addSecs(60).toString(u":mm"_s)), qPrintable(american));
    }

    void labelOfNoDateIsEmpty_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("nothing") << QVariant();
        QTest::newRow("no valid date") << QVariant(QDateTime());
        QTest::newRow("no valid day") << QVariant(QDate());
    }
    void labelOfNoDateIsEmpty()
    {
        QFETCH(QVariant, value);
        QLabel label(u"something"_s);
        m_model->setAnything(value);
        bind(label, Binding::Value, *m_model, u"anything"_s);
        QCOMPARE(label.text(), QString());
    }

    void transformerWorksBothWays()
    {
        QLineEdit field;
        m_model->setText(u"de"_s);
        bind(field, Binding::Value, *m_model, u"text"_s, {.transformerName = u"Capitals"_s});
        QCOMPARE(field.text(), u"DE"_s);
        field.setText(u"FR"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->text(), u"fr"_s);
    }

    void editWithNothingBehindItIsTakenBack()
    {
        QLineEdit field;
        m_model->setText(u"de"_s);
        bind(field, Binding::Value, *m_model, u"text"_s, {.transformerName = u"Capitals"_s});
        field.setText(u"?"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->text(), u"de"_s);
        QCOMPARE(field.text(), u"DE"_s);
    }

    void transformerWithoutAWayBackStoresNothing()
    {
        QLineEdit field;
        m_model->setText(u"de"_s);
        bind(field, Binding::Value, *m_model, u"text"_s, {.transformerName = u"OneWay"_s});
        QCOMPARE(field.text(), u"language de"_s);
        field.setText(u"fr"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->text(), u"de"_s);
        QCOMPARE(field.text(), u"language de"_s);
    }

    void unknownTransformerPassesTheValueThrough()
    {
        QLineEdit field;
        m_model->setText(u"de"_s);
        bind(field, Binding::Value, *m_model, u"text"_s, {.transformerName = u"Unheard of"_s});
        QCOMPARE(field.text(), u"de"_s);
        field.setText(u"fr"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->text(), u"fr"_s);
    }

    void modelThatAlwaysNotifiesMakesNoLoop()
    {
        QCheckBox first;
        QCheckBox second;
        bind(first, Binding::Value, *m_model, u"flag"_s);
        bind(second, Binding::Value, *m_model, u"flag"_s);
        first.click();
        QVERIFY(second.isChecked());
        QCOMPARE(m_model->writes(), 1);
        second.click();
        QVERIFY(!first.isChecked());
        QCOMPARE(m_model->writes(), 2);
    }

    void constantPropertyIsReadOnce()
    {
        QLabel label;
        bind(label, Binding::Value, *m_model, u"constant"_s);
        QCOMPARE(label.text(), u"always"_s);
    }

    void modelGoingFirstLeavesTheControlAsItIs()
    {
        QLineEdit field;
        m_model->setText(u"last"_s);
        bind(field, Binding::Value, *m_model, u"text"_s);
        m_model.reset();
        QCOMPARE(field.text(), u"last"_s);
        QTest::keyClicks(&field, u"!"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(field.text(), u"last!"_s);
    }

    void controlGoingFirstEndsTheBinding()
    {
        auto field = std::make_unique<QLineEdit>();
        bind(*field, Binding::Value, *m_model, u"text"_s);
        field.reset();
        m_model->setText(u"new"_s);
        QCOMPARE(m_model->receiversOfChange(), 0);
    }

    void controlThatGoesOverItsOwnEditIsNoTrouble()
    {
        auto field = std::make_unique<QLineEdit>();
        bind(*field, Binding::Value, *m_model, u"text"_s);
        connect(m_model.get(), &BoundModel::changed, this, [&field] { field.reset(); });
        field->setText(u"new"_s);
        Q_EMIT field->editingFinished();
        QVERIFY(!field);
        QCOMPARE(m_model->text(), u"new"_s);
    }

    void secondBindingOfAKindTakesThePlaceOfTheFirst()
    {
        QLineEdit field;
        BoundModel other;
        bind(field, Binding::Value, *m_model, u"text"_s);
        bind(field, Binding::Value, other, u"text"_s);
        m_model->setText(u"first"_s);
        QCOMPARE(field.text(), QString());
        field.setText(u"edited"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(other.text(), u"edited"_s);
        QCOMPARE(m_model->text(), u"first"_s);
    }

    void bindingsThatCannotBeAreFatalFaults()
    {
        const FatalFaultTrap trap;
        QLineEdit field;
        QWidget plain;
        QVERIFY_EXCEPTION_THROWN(bind(field, Binding::Value, *m_model, u"nothing"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(field, Binding::SelectedTag, *m_model, u"text"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(plain, Binding::Value, *m_model, u"text"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(plain, Binding::Title, *m_model, u"text"_s), FatalFaultCaught);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<BoundModel> m_model;
};

PLOVENDIX_GUI_TEST(BindingsTest)
#include "BindingsTest.moc"
