#include <base/Bundle.h>
#include <base/UserDefaults.h>
#include <features/preferences/PrefsWindowController.h>
#include <features/preferences/PrefsUpdatesViewController.h>
#include <features/updates/UpdateChecking.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString AutomaticKey = u"SUEnableAutomaticChecks"_s;
const QString IntervalKey = u"SUScheduledCheckInterval"_s;
const QString LastCheckKey = u"SULastCheckTime"_s;

struct FakeUpdater final : UpdateChecking
{
    void checkForUpdates(QObject *sender) override
    {
        ++checks;
        sentBy = sender;
    }
    int checks = 0;
    QObject *sentBy = nullptr;
};
} // namespace

/// The Updates pane in a window, used as a person does.
class PrefsUpdatesTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::shared_ptr<FakeUpdater> m_updater;
    std::shared_ptr<PrefsUpdatesViewController> m_pane;
    std::unique_ptr<ui::Window> m_window;
    int m_files = 0;

    static UserDefaults &defaults() { return UserDefaults::standard(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return m_window->findChild<Type *>(QString::fromLatin1(name));
    }
    QCheckBox *checkBox() const { return child<QCheckBox>("autoCheckForUpdatesCheckbox"); }
    QComboBox *interval() const { return child<QComboBox>("checkFrequencyPopup"); }
    QLabel *lastCheck() const { return child<QLabel>("lastCheckTextField"); }
    QPushButton *button() const { return child<QPushButton>("checkNowButton"); }
    void open()
    {
        m_pane = Storyboard::named(u"Preferences"_s)
                     .instantiate<PrefsUpdatesViewController>(u"PrefsUpdatesViewController"_s);
        m_window = std::make_unique<ui::Window>();
        m_window->setContentViewController(m_pane);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

private Q_SLOTS:
    void initTestCase() { registerPreferencesScenes(); }
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files)));
        m_updater = std::make_shared<FakeUpdater>();
        UpdateChecking::setSharedUpdater(m_updater);
    }
    void cleanup()
    {
        m_window.reset();
        m_pane.reset();
        UpdateChecking::setSharedUpdater({});
        Bundle::main().setPreferredLocalizations({});
    }

    void textsAreInThePersonsLanguage()
    {
        Bundle::main().setPreferredLocalizations({u"de"_s});
        open();
        QCOMPARE((QStringList{child<QLabel>("checkForUpdatesLabel")->text(),
                              child<QLabel>("lastCheckLabel")->text(), button()->text(), checkBox()->text()}),
                 (QStringList{u"Nach Updates suchen"_s, u"Letzte Suche"_s, u"Jetzt suchen"_s,
                              u"Automatisch nach Updates suchen"_s}));
    }

    void intervalIsEnabledWithAutomaticChecks()
    {
        defaults().setObject(AutomaticKey, false);
        open();
        QVERIFY(!checkBox()->isChecked());
        QVERIFY(!interval()->isEnabled());
        QTest::mouseClick(checkBox(), Qt::LeftButton, {}, QPoint(8, checkBox()->height() / 2));
        QVERIFY(interval()->isEnabled());
        QCOMPARE(defaults().object(AutomaticKey), QVariant(true));
        QTest::keyClick(checkBox(), Qt::Key_Space);
        QVERIFY(!interval()->isEnabled());
        QCOMPARE(defaults().object(AutomaticKey), QVariant(false));
        defaults().setObject(AutomaticKey, true); // by the updater
        QVERIFY(checkBox()->isChecked());
        QVERIFY(interval()->isEnabled());
        const auto relations =
            QAccessible::queryAccessibleInterface(interval())->relations(QAccessible::Label);
        QCOMPARE(relations.size(), 1);
        QCOMPARE(relations.first().first->text(QAccessible::Name), u"Check for updates"_s);
    }

    void intervalInTheSettingsIsSelected()
    {
        defaults().registerDefaults({{IntervalKey, u"86400"_s}});
        open();
        QCOMPARE(interval()->currentText(), u"Every day"_s);
        QCOMPARE(defaults().object(IntervalKey), QVariant(u"86400"_s));
        defaults().setObject(IntervalKey, 604800);
        QCOMPARE(interval()->currentText(), u"Every week"_s);
        defaults().setObject(IntervalKey, 12345);
        QCOMPARE(interval()->currentIndex(), -1);
        QCOMPARE(interval()->currentText(), QString());
        QCOMPARE(defaults().integer(IntervalKey), 12345);
    }

    void choosingAnIntervalStoresItsSeconds_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("seconds");
        QTest::newRow("hour") << u"Every hour"_s << 3600;
        QTest::newRow("day") << u"Every day"_s << 86400;
        QTest::newRow("week") << u"Every week"_s << 604800;
        QTest::newRow("month") << u"Every month"_s << 2592000;
    }
    void choosingAnIntervalStoresItsSeconds()
    {
        QFETCH(QString, title);
        QFETCH(int, seconds);
        defaults().setObject(AutomaticKey, true);
        open();
        QTest::keyClick(interval(), Qt::Key_End);
        while (interval()->currentText() != title && interval()->currentIndex() > 0)
            QTest::keyClick(interval(), Qt::Key_Up);
        QCOMPARE(interval()->currentText(), title);
        QCOMPARE(defaults().object(IntervalKey), QVariant(qlonglong{seconds})); // an integer, no text
        QCOMPARE(interval()->count(), 4);
        defaults().synchronize();
        QFile file(defaults().path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().split('\n');
        QVERIFY2(lines.contains("SUScheduledCheckInterval=" + QByteArray::number(seconds)),
                 lines.join('|').constData());
    }

    void theLastCheckIsWrittenAsTheRegionDoes_data()
    {
        QTest::addColumn<QLocale>("region");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << QLocale::c() << u"20 November 2026, 18:04"_s;
        QTest::newRow("United States") << QLocale(u"en_US"_s) << u"November 20, 2026, 6:04 PM"_s;
        QTest::newRow("Germany") << QLocale(u"de_DE"_s) << u"20. November 2026, 18:04"_s;
        QTest::newRow("Japan") << QLocale(u"ja_JP"_s) << u"2026年11月20日, 18:04"_s;
    }
    void theLastCheckIsWrittenAsTheRegionDoes()
    {
        QFETCH(QLocale, region);
        QFETCH(QString, text);
        const QLocale before;
        QLocale::setDefault(region);
        open();
        QCOMPARE(lastCheck()->text(), QString()); // before the first check
        const QDateTime time(QDate(2026, 11, 20), QTime(18, 4), Qt::LocalTime);
        defaults().setObject(LastCheckKey, time);
        const QString shown = lastCheck()->text();
        QLocale::setDefault(before);
        QCOMPARE(shown, text);
    }

    void checkNowAsksTheSharedUpdaterWithoutASender()
    {
        open();
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(m_updater->checks, 1);
        QVERIFY(!m_updater->sentBy);
        QTest::keyClick(button(), Qt::Key_Space);
        QCOMPARE(m_updater->checks, 2);
        // The pane itself stores nothing.
        QVERIFY(!defaults().object(LastCheckKey).isValid());
        UpdateChecking::setSharedUpdater({});
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(m_updater->checks, 2);
    }
};

PLOVENDIX_GUI_TEST(PrefsUpdatesTest)
#include "PrefsUpdatesTest.moc"
