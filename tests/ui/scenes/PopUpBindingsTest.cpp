#include "BoundModel.h"

#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Bindings.h>

#include <QCheckBox>
#include <QComboBox>

using namespace Qt::StringLiterals;

namespace
{
const QString Interval = u"SUScheduledCheckInterval"_s;

void fillIntervals(QComboBox &comboBox)
{
    comboBox.addItem(u"Hourly"_s, 3600);
    comboBox.addItem(u"Daily"_s, 86400);
    comboBox.insertSeparator(2);
    comboBox.addItem(u"Weekly"_s, 604800);
}

UserDefaults &defaults()
{
    return UserDefaults::standard();
}
} // namespace

/// Pop-ups, and the standard user defaults that most of them are bound to.
class PopUpBindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // A new file for each test, so that no test sees the settings of another.
        UserDefaults::setStandardFile(
            m_sandbox.path(u"%1.conf"_s.arg(QLatin1String(QTest::currentTestFunction()))));
        m_model = std::make_unique<BoundModel>();
    }

    void itemIsSelectedByItsTag_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("index");
        QTest::newRow("number") << QVariant(86400) << 1;
        QTest::newRow("long number") << QVariant(604800LL) << 3;
        QTest::newRow("real number") << QVariant(3600.0) << 0;
        QTest::newRow("text") << QVariant(u"86400"_s) << 1;
        QTest::newRow("of no item") << QVariant(7) << -1;
        QTest::newRow("a fraction") << QVariant(3600.5) << -1;
        QTest::newRow("no number") << QVariant(u"daily"_s) << -1;
        QTest::newRow("zero, which the separator lacks, too") << QVariant(0) << -1;
        QTest::newRow("nothing") << QVariant() << -1;
    }
    void itemIsSelectedByItsTag()
    {
        QFETCH(QVariant, value);
        QFETCH(int, index);
        m_model->setValue(value);
        QComboBox before;
        fillIntervals(before);
        bind(before, Binding::SelectedTag, *m_model, u"value"_s);
        QCOMPARE(before.currentIndex(), index);
        // A pop-up that is filled later selects its first item by itself.
        QComboBox after;
        bind(after, Binding::SelectedTag, *m_model, u"value"_s);
        fillIntervals(after);
        QCOMPARE(after.currentIndex(), index);
        QCOMPARE(m_model->writes, 1);
        before.setItemData(index, {});
        QCOMPARE(before.currentIndex(), -1);
        after.removeItem(index);
        QCOMPARE(after.currentIndex(), -1);
        before.setCurrentIndex(0); // by code, and therefore not stored
        after.clear();
        QCOMPARE(m_model->value(), value);
    }

    void textsAreNotComparedAsNumbers()
    {
        QComboBox comboBox;
        comboBox.addItem(u"One"_s, u"1"_s);
        comboBox.addItem(u"One, padded"_s, u"01"_s);
        comboBox.addItem(u"Again"_s, u"01"_s);
        m_model->setValue(u"01"_s);
        bind(comboBox, Binding::SelectedObject, *m_model, u"value"_s);
        QCOMPARE(comboBox.currentIndex(), 1);
        m_model->setValue(1);
        QCOMPARE(comboBox.currentIndex(), 0);
    }

    void chosenItemIsStoredAlsoWhenItShows()
    {
        QComboBox comboBox;
        fillIntervals(comboBox);
        defaults().registerDefaults({{Interval, u"86400"_s}});
        bindToDefaults(comboBox, Binding::SelectedTag, Interval);
        QCOMPARE(comboBox.currentText(), u"Daily"_s);
        int notifications = 0;
        const auto observation = defaults().observe(Interval, [&](const QVariant &) { ++notifications; });
        Q_EMIT comboBox.activated(1);
        QCOMPARE(UserDefaults(defaults().path()).object(Interval), QVariant(86400LL)); // as after a restart
        QCOMPARE(notifications, 0); // the value is what it was
        QTest::keyClick(&comboBox, Qt::Key_Down);
        QCOMPARE(UserDefaults(defaults().path()).integer(Interval), 604800);
        QCOMPARE(comboBox.currentIndex(), 3);
    }

    void defaultsAreFollowedLive()
    {
        QCheckBox checkBox;
        QWidget dependent;
        bindToDefaults(checkBox, Binding::Value, u"SUEnableAutomaticChecks"_s);
        bindToDefaults(dependent, Binding::Enabled, u"SUEnableAutomaticChecks"_s);
        QVERIFY(!dependent.isEnabled());
        checkBox.click();
        QCOMPARE(defaults().object(u"SUEnableAutomaticChecks"_s), QVariant(true));
        QTRY_VERIFY(dependent.isEnabled());
        defaults().removeObject(u"SUEnableAutomaticChecks"_s);
        QTRY_VERIFY(!checkBox.isChecked());
        QComboBox language;
        language.addItem(u"English"_s, u"en"_s);
        language.setCurrentIndex(-1);
        bindToDefaults(language, Binding::SelectedObject, u"languageCode"_s);
        QCOMPARE(language.currentIndex(), 0); // although nothing is registered for it
        UserDefaults::setStandardFile(m_sandbox.path(u"another.conf"_s));
        QCOMPARE(language.currentIndex(), 0); // other defaults leave the control alone
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<BoundModel> m_model;
};

PLOVENDIX_GUI_TEST(PopUpBindingsTest)
#include "PopUpBindingsTest.moc"
