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

    void datesAreWrittenAsInTheRegion()
    {
        const QLocale german(QLocale::German, QLocale::Germany);
        const QLocale american(QLocale::English, QLocale::UnitedStates);
        const QDateTime time(QDate(2024, 3, 1), QTime(14, 5));
        const std::tuple<QLocale, QVariant, QString> cases[] = {
            {german, time.toUTC(), u"1. März 2024, 14:05"_s},
            {american, time, u"March 1, 2024, 2:05 PM"_s},
            {QLocale::c(), time, u"1 March 2024, 14:05"_s},
            {german, time.date(), u"1. März 2024"_s},
            {german, QVariant(), QString()},
            {german, QDateTime(), QString()},
            {german, QDate(), QString()},
        };
        for (const auto &[region, value, text] : cases) {
            QLocale::setDefault(region);
            m_model->setValue(value);
            QLabel label(u"something"_s);
            bind(label, Binding::Value, *m_model, u"value"_s);
            QCOMPARE(label.text().replace(QChar(0x202f), u' '), text);
        }
    }

    void fieldStoresAFinishedEdit_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("transformer");
        QTest::addColumn<QStringList>("texts"); // shown of "de", typed, stored, shown then
        const auto row = [](const char *name, const QString &transformer, const QStringList &texts,
                            const QString &property = u"value"_s) {
            QTest::newRow(name) << property << transformer << texts;
        };
        row("text", {}, {u"de"_s, u"fr"_s, u"fr"_s, u"fr"_s});
        row("transformed", u"Capitals"_s, {u"DE"_s, u"FR"_s, u"fr"_s, u"FR"_s});
        row("with nothing behind it", u"Capitals"_s, {u"DE"_s, u"?"_s, u"de"_s, u"DE"_s});
        row("without a way back", u"OneWay"_s, {u"language de"_s, u"fr"_s, u"de"_s, u"language de"_s});
        row("of an unknown transformer", u"Unknown"_s, {u"de"_s, u"fr"_s, u"fr"_s, u"fr"_s});
        row("refused", {}, {u"0"_s, u"25"_s, u"10"_s, u"10"_s}, u"atMostTen"_s);
    }
    void fieldStoresAFinishedEdit()
    {
        QFETCH(QString, property);
        QFETCH(QString, transformer);
        QFETCH(QStringList, texts);
        m_model->setValue(u"de"_s);
        QLineEdit field;
        bind(field, Binding::Value, *m_model, property, {.transformerName = transformer});
        const QString shown = field.text();
        field.selectAll();
        QTest::keyClicks(&field, texts.at(1));
        QCOMPARE(m_model->writes, 1); // not before the end
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(QStringList({shown, texts.at(1), m_model->value().toString(), field.text()}), texts);
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
