#include "FakePortal.h"

#include <tests/support/TestMain.h>
#include <ui/system/SettingsPortal.h>

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
const auto Appearance = u"org.freedesktop.appearance"_s;
const auto Interface = u"org.gnome.desktop.interface"_s;

std::unique_ptr<PrivateBus> bus;
} // namespace

class SettingsPortalTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { bus = std::make_unique<PrivateBus>(); }

private Q_SLOTS:
    void init()
    {
        QVERIFY2(!bus->address().isEmpty(), "No session bus could be started");
        m_fake = std::make_unique<FakePortal>(bus->address());
        m_fake->answer = QVariant::fromValue(SettingsOfNamespaces());
        m_portal = std::make_unique<SettingsPortal>(nullptr);
    }

    void cleanup()
    {
        m_portal.reset();
        m_fake.reset();
    }

    void cleanupTestCase() { bus.reset(); }

    void readsEverythingAtOnce()
    {
        m_fake->answer = QVariant::fromValue(SettingsOfNamespaces{
            {Appearance, {{u"color-scheme"_s, 1U}, {u"accent-color"_s, FakePortal::color(1, 0.5, 0)}}},
            {Interface, {{u"enable-animations"_s, false}}}});
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QVERIFY(changed.wait());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(m_portal->colorScheme(), SettingsPortal::ColorScheme::Dark);
        QVERIFY(m_portal->accentColor().has_value());
        QCOMPARE(m_portal->accentColor()->name(), u"#ff8000"_s);
        QVERIFY(m_portal->prefersReducedMotion());
    }

    void followsChanges_data()
    {
        using Scheme = SettingsPortal::ColorScheme;
        QTest::addColumn<QString>("settingNamespace");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<Scheme>("scheme");
        QTest::addColumn<QString>("accent");
        QTest::addColumn<bool>("reducedMotion");
        QTest::newRow("dark") << Appearance << u"color-scheme"_s << QVariant(1U) << Scheme::Dark << QString()
                              << false;
        QTest::newRow("light") << Appearance << u"color-scheme"_s << QVariant(2U) << Scheme::Light
                               << QString() << false;
        QTest::newRow("no preference")
            << Appearance << u"color-scheme"_s << QVariant(0U) << Scheme::NoPreference << QString() << false;
        QTest::newRow("a scheme of the future")
            << Appearance << u"color-scheme"_s << QVariant(9U) << Scheme::NoPreference << QString() << false;
        QTest::newRow("accent") << Appearance << u"accent-color"_s << FakePortal::color(0, 0.2, 1)
                                << Scheme::NoPreference << u"#0033ff"_s << false;
        QTest::newRow("reduced motion")
            << Appearance << u"reduced-motion"_s << QVariant(1U) << Scheme::NoPreference << QString() << true;
        QTest::newRow("no animations") << Interface << u"enable-animations"_s << QVariant(false)
                                       << Scheme::NoPreference << QString() << true;
        QTest::newRow("animations") << Interface << u"enable-animations"_s << QVariant(true)
                                    << Scheme::NoPreference << QString() << false;
    }

    void followsChanges()
    {
        QFETCH(QString, settingNamespace);
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(SettingsPortal::ColorScheme, scheme);
        QFETCH(QString, accent);
        QFETCH(bool, reducedMotion);
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QVERIFY(changed.wait());
        m_fake->sendChange(settingNamespace, key, value);
        QVERIFY(changed.wait());
        QCOMPARE(m_portal->colorScheme(), scheme);
        QCOMPARE(m_portal->accentColor() ? m_portal->accentColor()->name() : QString(), accent);
        QCOMPARE(m_portal->prefersReducedMotion(), reducedMotion);
    }

    void takesNoNonsense_data()
    {
        QTest::addColumn<QString>("settingNamespace");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("scheme as text") << Appearance << u"color-scheme"_s << QVariant(u"light"_s);
        QTest::newRow("scheme as a structure")
            << Appearance << u"color-scheme"_s << FakePortal::color(0, 0, 0);
        QTest::newRow("animations as a number") << Interface << u"enable-animations"_s << QVariant(1U);
        QTest::newRow("a key nobody knows") << Appearance << u"colour-scheme"_s << QVariant(2U);
        QTest::newRow("another namespace") << u"org.example"_s << u"color-scheme"_s << QVariant(2U);
        QTest::newRow("animations of the wrong namespace")
            << Appearance << u"enable-animations"_s << QVariant(true);
    }

    void takesNoNonsense()
    {
        QFETCH(QString, settingNamespace);
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        m_fake->answer = QVariant::fromValue(SettingsOfNamespaces{
            {Appearance, {{u"color-scheme"_s, 1U}}}, {Interface, {{u"enable-animations"_s, false}}}});
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QVERIFY(changed.wait());
        m_fake->sendChange(settingNamespace, key, value);
        QVERIFY(changed.wait());
        QCOMPARE(m_portal->colorScheme(), SettingsPortal::ColorScheme::Dark);
        QVERIFY(m_portal->prefersReducedMotion());
    }

    void colourOutOfRangeMeansNone_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("negative") << FakePortal::color(-1, 0, 0);
        QTest::newRow("too much") << FakePortal::color(0, 0, 1.01);
        QTest::newRow("no number") << FakePortal::color(0, std::numeric_limits<double>::quiet_NaN(), 0);
        QTest::newRow("text") << QVariant(u"#ff0000"_s);
        QTest::newRow("list of numbers") << QVariant::fromValue(QList<double>{1, 0, 0});
    }

    void colourOutOfRangeMeansNone()
    {
        QFETCH(QVariant, value);
        qDBusRegisterMetaType<QList<double>>();
        m_fake->answer = QVariant::fromValue(
            SettingsOfNamespaces{{Appearance, {{u"accent-color"_s, FakePortal::color(1, 0, 0)}}}});
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QVERIFY(changed.wait());
        QVERIFY(m_portal->accentColor().has_value());
        m_fake->sendChange(Appearance, u"accent-color"_s, value);
        QVERIFY(changed.wait());
        QVERIFY(!m_portal->accentColor().has_value());
    }

    void answerOfAnotherShapeIsPassedOver_data()
    {
        QTest::addColumn<QVariant>("answer");
        QTest::newRow("refusal") << QVariant();
        QTest::newRow("text") << QVariant(u"dark"_s);
        QTest::newRow("flat") << QVariant(QVariantMap{{u"color-scheme"_s, 1U}});
    }

    void answerOfAnotherShapeIsPassedOver()
    {
        QFETCH(QVariant, answer);
        m_fake->answer = answer;
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QTRY_COMPARE(m_fake->questions, 1);
        // It still listens.
        m_fake->sendChange(Appearance, u"color-scheme"_s, 2U);
        QVERIFY(changed.wait());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(m_portal->colorScheme(), SettingsPortal::ColorScheme::Light);
    }

    void worksWithoutAPortal()
    {
        m_fake.reset();
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        // One that comes later is heard.
        m_fake = std::make_unique<FakePortal>(bus->address());
        m_fake->sendChange(Appearance, u"color-scheme"_s, 1U);
        QVERIFY(changed.wait());
        QCOMPARE(m_portal->colorScheme(), SettingsPortal::ColorScheme::Dark);
    }

    void doesNotBlock()
    {
        // The fake answers from this thread: had start waited for it, it would have waited in vain.
        QSignalSpy changed(m_portal.get(), &SettingsPortal::changed);
        m_portal->start();
        QCOMPARE(m_fake->questions, 0);
        QCOMPARE(changed.size(), 0);
        QVERIFY(changed.wait());
    }

private:
    std::unique_ptr<FakePortal> m_fake;
    std::unique_ptr<SettingsPortal> m_portal;
};

PLOVENDIX_GUI_TEST(SettingsPortalTest)
#include "SettingsPortalTest.moc"
