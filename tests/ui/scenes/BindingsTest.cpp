#include "BoundModel.h"

#include <base/UserDefaults.h>
#include <base/ValueTransformer.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/scenes/Bindings.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
/// Codes in capitals on screen, in small letters in the model; "?" stands for nothing.
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
    void cleanup() { QLocale::setDefault(QLocale::system()); }

    void checkBoxFollowsAndIsFollowed()
    {
        QCheckBox checkBox;
        QCheckBox opposite;
        bind(checkBox, Binding::Value, *m_model, u"value"_s);
        bind(opposite, Binding::Value, *m_model, u"value"_s, {.negate = true});
        QVERIFY(!checkBox.isChecked());
        QVERIFY(opposite.isChecked());
        m_model->setValue(u"YES"_s);
        QVERIFY(checkBox.isChecked());
        QCOMPARE(m_model->value(), QVariant(u"YES"_s)); // shown, not stored
        checkBox.click();
        QCOMPARE(m_model->value(), QVariant(false));
        opposite.click();
        QVERIFY(checkBox.isChecked());
        QCOMPARE(m_model->writes, 3); // although each write notifies both
        // Assistive tools toggle without a click.
        auto *actions = QAccessible::queryAccessibleInterface(&checkBox)->actionInterface();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(m_model->value(), QVariant(false));
    }

    void enabledAndHiddenFollowLive()
    {
        QWidget window;
        QPushButton button(&window);
        window.show();
        bind(button, Binding::Enabled, *m_model, u"value"_s, {.negate = true});
        bind(button, Binding::Hidden, *m_model, u"value"_s);
        QVERIFY(button.isEnabled() && button.isVisible());
        m_model->setValue(1);
        QVERIFY(!button.isEnabled() && !button.isVisible());
        m_model->setValue(u"NO"_s);
        QVERIFY(button.isEnabled() && button.isVisible());
    }

    void textsAreNeitherMnemonicsNorMarkup()
    {
        const QString text = u"<i>Rock</i> & Roll"_s;
        m_model->setValue(text);
        QPushButton button;
        QGroupBox groupBox;
        QLabel label;
        ui::Label title;
        ui::Label value;
        QLineEdit field;
        for (QWidget *titled : {static_cast<QWidget *>(&button), static_cast<QWidget *>(&groupBox),
                                static_cast<QWidget *>(&label), static_cast<QWidget *>(&title)})
            bind(*titled, Binding::Title, *m_model, u"value"_s);
        bind(value, Binding::Value, *m_model, u"value"_s);
        bind(field, Binding::Value, *m_model, u"value"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name), text);
        QCOMPARE(groupBox.title(), u"<i>Rock</i> && Roll"_s);
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QCOMPARE(QStringList({label.text(), title.text(), value.text(), field.text()}), QStringList(4, text));
        m_model->setValue(u"Jazz"_s);
        QCOMPARE(QStringList({button.text(), title.text(), field.text()}), QStringList(3, u"Jazz"_s));
    }

    void datesAreWrittenAsInTheRegion_data()
    {
        QTest::addColumn<QLocale>("region");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        const QLocale german(QLocale::German, QLocale::Germany);
        const QDate day(2024, 3, 1);
        QTest::newRow("German") << german << QVariant(QDateTime(day, {14, 5})) << u"1. März 2024, 14:05"_s;
        QTest::newRow("American") << QLocale(QLocale::English, QLocale::UnitedStates)
                                  << QVariant(QDateTime(day, {14, 5})) << u"March 1, 2024, 2:05 PM"_s;
        QTest::newRow("none") << QLocale::c() << QVariant(QDateTime(day, {14, 5}))
                              << u"1 March 2024, 14:05"_s;
        QTest::newRow("day") << german << QVariant(day) << u"1. März 2024"_s;
        QTest::newRow("nothing") << german << QVariant() << QString();
        QTest::newRow("no valid time") << german << QVariant(QDateTime()) << QString();
        QTest::newRow("no valid day") << german << QVariant(QDate()) << QString();
    }
    void datesAreWrittenAsInTheRegion()
    {
        QFETCH(QLocale, region);
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        QLocale::setDefault(region);
        m_model->setValue(value.typeId() == QMetaType::QDateTime ? value.toDateTime().toUTC() : value);
        QLabel label(u"something"_s);
        bind(label, Binding::Value, *m_model, u"value"_s);
        QCOMPARE(label.text().replace(QChar(0x202f), u' '), text);
    }

    void fieldStoresAFinishedEdit_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("transformer");
        QTest::addColumn<QString>("shown"); // of "de"
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("shownThen");
        QTest::newRow("text") << u"value"_s << QString() << u"de"_s << u"fr"_s << u"fr"_s << u"fr"_s;
        QTest::newRow("transformed") << u"value"_s << u"Capitals"_s << u"DE"_s << u"FR"_s << u"fr"_s
                                     << u"FR"_s;
        QTest::newRow("with nothing behind it")
            << u"value"_s << u"Capitals"_s << u"DE"_s << u"?"_s << u"de"_s << u"DE"_s;
        QTest::newRow("without a way back")
            << u"value"_s << u"OneWay"_s << u"language de"_s << u"fr"_s << u"de"_s << u"language de"_s;
        QTest::newRow("of an unknown transformer")
            << u"value"_s << u"Unknown"_s << u"de"_s << u"fr"_s << u"fr"_s << u"fr"_s;
        QTest::newRow("refused") << u"atMostTen"_s << QString() << u"0"_s << u"25"_s << u"10"_s << u"10"_s;
    }
    void fieldStoresAFinishedEdit()
    {
        QFETCH(QString, property);
        QFETCH(QString, transformer);
        QFETCH(QString, shown);
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(QString, shownThen);
        m_model->setValue(u"de"_s);
        QLineEdit field;
        bind(field, Binding::Value, *m_model, property, {.transformerName = transformer});
        QCOMPARE(field.text(), shown);
        field.selectAll();
        QTest::keyClicks(&field, typed);
        QCOMPARE(m_model->writes, 1); // not before the end
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->value().toString(), stored);
        QCOMPARE(field.text(), shownThen);
        // An edit without a change stores nothing and leaves the caret.
        const int writes = m_model->writes;
        field.setCursorPosition(1);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(m_model->writes, writes);
        QCOMPARE(field.cursorPosition(), 1);
    }

    void eitherSideMayBeDestroyedFirst()
    {
        auto field = std::make_unique<QLineEdit>();
        QComboBox comboBox;
        comboBox.addItems({u"One"_s, u"Two"_s, u"Three"_s});
        comboBox.setItemData(1, u"two"_s);
        m_model->setValue(u"two"_s);
        bind(*field, Binding::Value, *m_model, u"value"_s);
        bindToDefaults(*field, Binding::Enabled, u"SomeKey"_s);
        bind(comboBox, Binding::SelectedObject, *m_model, u"value"_s);
        m_model.reset();
        field->setText(u"edited"_s);
        QTest::keyClick(field.get(), Qt::Key_Return);
        QCOMPARE(field->text(), u"edited"_s);
        comboBox.addItem(u"Four"_s);
        QCOMPARE(comboBox.currentIndex(), 1);
        QTest::keyClick(&comboBox, Qt::Key_Down);
        QCOMPARE(comboBox.currentIndex(), 2);

        BoundModel other;
        bind(*field, Binding::Value, other, u"value"_s);
        QVERIFY(other.hasReceivers());
        field.reset();
        QVERIFY(!other.hasReceivers());
        UserDefaults::standard().setObject(u"SomeKey"_s, 1); // reaches no destroyed control
        UserDefaults::standard().synchronize();
    }

    void bindingAnewEndsTheEarlierOneOfTheKind()
    {
        QLineEdit field;
        BoundModel other;
        bind(field, Binding::Enabled, *m_model, u"value"_s);
        bind(field, Binding::Value, *m_model, u"value"_s);
        bind(field, Binding::Value, other, u"value"_s);
        m_model->setValue(u"1"_s);
        QVERIFY(field.isEnabled());
        QCOMPARE(field.text(), QString());
        field.setText(u"edited"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(other.value().toString(), u"edited"_s);
        QCOMPARE(m_model->value().toString(), u"1"_s);
    }

    void bindingsThatCannotBeAreFatalFaults()
    {
        const FatalFaultTrap trap;
        QLineEdit field;
        QWidget plain;
        QLabel label;
        bind(label, Binding::Value, *m_model, u"constant"_s); // a property that never notifies may be read
        QCOMPARE(label.text(), u"always"_s);
        QVERIFY_EXCEPTION_THROWN(bind(field, Binding::Value, *m_model, u"nothing"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(field, Binding::SelectedTag, *m_model, u"value"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(plain, Binding::Value, *m_model, u"value"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(bind(plain, Binding::Title, *m_model, u"value"_s), FatalFaultCaught);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<BoundModel> m_model;
};

PLOVENDIX_GUI_TEST(BindingsTest)
#include "BindingsTest.moc"
