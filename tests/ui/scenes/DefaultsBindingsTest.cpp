#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/scenes/Bindings.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

/// Controls bound to the standard user defaults, as the pane of the update settings binds them.
class DefaultsBindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // A file of its own for each test, so that none sees another's settings.
        UserDefaults::setStandardFile(
            m_sandbox.path(u"%1/Plovendix.conf"_s.arg(QLatin1String(QTest::currentTestFunction()))));
        m_popup = std::make_unique<QComboBox>();
        m_popup->addItem(u"Hourly"_s, 3600);
        m_popup->addItem(u"Daily"_s, 86400);
        m_popup->addItem(u"Weekly"_s, 604800);
    }
    void cleanup() { m_popup.reset(); }

    void checkBoxStoresAndFollows()
    {
        QCheckBox checkBox;
        bindToDefaults(checkBox, Binding::Value, u"SUEnableAutomaticChecks"_s);
        QVERIFY(!checkBox.isChecked());
        checkBox.click();
        QCOMPARE(defaults().object(u"SUEnableAutomaticChecks"_s), QVariant(true));
        defaults().setObject(u"SUEnableAutomaticChecks"_s, false);
        QTRY_VERIFY(!checkBox.isChecked());
    }

    void popupIsEnabledAtOnceByTheCheckBox()
    {
        QCheckBox checkBox;
        bindToDefaults(checkBox, Binding::Value, u"SUEnableAutomaticChecks"_s);
        bindToDefaults(*m_popup, Binding::Enabled, u"SUEnableAutomaticChecks"_s);
        QVERIFY(!m_popup->isEnabled());
        checkBox.click();
        QTRY_VERIFY(m_popup->isEnabled());
        checkBox.click();
        QTRY_VERIFY(!m_popup->isEnabled());
    }

    void registeredTextSelectsTheTagAndStaysUnstored()
    {
        defaults().registerDefaults({{u"SUScheduledCheckInterval"_s, u"86400"_s}});
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        QCOMPARE(m_popup->currentText(), u"Daily"_s);
        QCOMPARE(defaults().object(u"SUScheduledCheckInterval"_s), QVariant(u"86400"_s));
    }

    void choosingTheRegisteredValueStoresItWithoutNotifying()
    {
        defaults().registerDefaults({{u"SUScheduledCheckInterval"_s, u"86400"_s}});
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        int told = 0;
        const auto observation =
            defaults().observe(u"SUScheduledCheckInterval"_s, [&told](const QVariant &) { ++told; });
        Q_EMIT m_popup->activated(m_popup->currentIndex());
        defaults().synchronize();
        const UserDefaults restarted(defaults().path()); // with nothing registered
        QCOMPARE(restarted.object(u"SUScheduledCheckInterval"_s), QVariant(86400LL));
        QCOMPARE(told, 0); // the value is what it was
    }

    void choiceIsStoredAndReadBackAfterARestart()
    {
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        QCOMPARE(m_popup->currentIndex(), -1);
        QTest::keyClick(m_popup.get(), Qt::Key_End);
        QCOMPARE(defaults().integer(u"SUScheduledCheckInterval"_s), 604800);
        defaults().synchronize();
        const UserDefaults restarted(defaults().path());
        QCOMPARE(restarted.integer(u"SUScheduledCheckInterval"_s), 604800);
    }

    void tagThatNoItemCarriesSelectsNothing()
    {
        defaults().setObject(u"SUScheduledCheckInterval"_s, 7);
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        QCOMPARE(m_popup->currentIndex(), -1);
        QCOMPARE(defaults().integer(u"SUScheduledCheckInterval"_s), 7);
    }

    void dateAppearsInTheOpenPane()
    {
        ui::Label label;
        bindToDefaults(label, Binding::Value, u"SULastCheckTime"_s);
        QCOMPARE(label.text(), QString());
        const QDateTime now(QDate(2024, 3, 1), QTime(14, 5), Qt::UTC);
        defaults().setObject(u"SULastCheckTime"_s, now);
        QTRY_VERIFY(label.text().contains(u"2024"_s));
        defaults().removeObject(u"SULastCheckTime"_s);
        QTRY_COMPARE(label.text(), QString());
    }

    void controlGoingFirstEndsTheObservation()
    {
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        m_popup.reset();
        int told = 0;
        const auto observation =
            defaults().observe(u"SUScheduledCheckInterval"_s, [&told](const QVariant &) { ++told; });
        defaults().setObject(u"SUScheduledCheckInterval"_s, 3600);
        QTRY_COMPARE(told, 1);
    }

    void defaultsReplacedFirstLeaveTheControlAlone()
    {
        defaults().setObject(u"SUScheduledCheckInterval"_s, 3600);
        bindToDefaults(*m_popup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
        UserDefaults::setStandardFile(m_sandbox.path(u"another/Plovendix.conf"_s));
        QCOMPARE(m_popup->currentText(), u"Hourly"_s);
        m_popup.reset();
        QCOMPARE(defaults().integer(u"SUScheduledCheckInterval"_s), 0);
    }

private:
    static UserDefaults &defaults() { return UserDefaults::standard(); }

    Sandbox m_sandbox;
    std::unique_ptr<QComboBox> m_popup;
};

PLOVENDIX_GUI_TEST(DefaultsBindingsTest)
#include "DefaultsBindingsTest.moc"
