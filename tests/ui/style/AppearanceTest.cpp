#include <tests/ui/system/FakePortal.h>

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/Appearance.h>
#include <ui/style/AppearancePalette.h>
#include <ui/style/BusyIndicator.h>
#include <ui/style/ChromeColors.h>
#include <ui/style/ChromeStyle.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
const auto Namespace = u"org.freedesktop.appearance"_s;

std::unique_ptr<PrivateBus> bus;

/// The contrast of two colours as accessibility guidelines count it, from 1 to 21.
double contrast(const QColor &one, const QColor &other)
{
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&channel](const QColor &color) {
        return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
               0.0722 * channel(color.blueF());
    };
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}
} // namespace

/// The functions run in their order, as one desktop's day: the appearance is installed once in a process.
class AppearanceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { bus = std::make_unique<PrivateBus>(); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!bus->address().isEmpty(), "No session bus could be started");
        m_fontBefore = QApplication::font();
        m_portal = std::make_unique<FakePortal>(bus->address());
        m_portal->answer = QVariant::fromValue(SettingsOfNamespaces{{Namespace, {{u"color-scheme"_s, 1U}}}});
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        Appearance::shared().install();
        // Light until the answer is there.
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Light);
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::white));
        QVERIFY(changed.wait());
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Dark);
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(0x20, 0x22, 0x26));
    }

    void init()
    {
        // Whatever the last function left, each begins on a light desktop without an accent that lets things
        // move.
        m_portal->sendChange(Namespace, u"color-scheme"_s, 2U);
        m_portal->sendChange(Namespace, u"accent-color"_s, FakePortal::color(-1, -1, -1));
        m_portal->sendChange(Namespace, u"reduced-motion"_s, 0U);
        QTRY_COMPARE(Appearance::shared().scheme(), Appearance::Scheme::Light);
        QTRY_COMPARE(Appearance::shared().accentColor(), QColor(0x2f, 0x6f, 0xde));
        QTRY_VERIFY(!Appearance::shared().prefersReducedMotion());
    }

    void cleanupTestCase()
    {
        m_portal.reset();
        bus.reset();
    }

    void installsTheProgramsStyle() { QVERIFY(qobject_cast<ChromeStyle *>(QApplication::style())); }

    void keepsTheDesktopsFont() { QCOMPARE(QApplication::font(), m_fontBefore); }

    void schemeFollowsLive()
    {
        change(u"color-scheme"_s, 1U);
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Dark);
        QVERIFY(ChromeColors::isDark(QApplication::palette()));
        change(u"color-scheme"_s, 0U);
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Light);
        QVERIFY(!ChromeColors::isDark(QApplication::palette()));
    }

    void accentFollowsLive()
    {
        change(u"accent-color"_s, FakePortal::color(1, 0.8, 0));
        QCOMPARE(Appearance::shared().accentColor().name(), u"#ffcc00"_s);
        QCOMPARE(QApplication::palette().color(QPalette::Highlight).name(), u"#ffcc00"_s);
        change(u"accent-color"_s, FakePortal::color(2, 2, 2));
        QCOMPARE(QApplication::palette().color(QPalette::Highlight), QColor(0x2f, 0x6f, 0xde));
    }

    void accentOfADarkDesktopDiffersUnlessChosen()
    {
        change(u"color-scheme"_s, 1U);
        QCOMPARE(Appearance::shared().accentColor(), QColor(0x4c, 0x8d, 0xff));
        change(u"accent-color"_s, FakePortal::color(1, 0, 0));
        QCOMPARE(Appearance::shared().accentColor(), QColor(Qt::red));
        change(u"color-scheme"_s, 2U);
        QCOMPARE(Appearance::shared().accentColor(), QColor(Qt::red));
    }

    void motionFollowsLive()
    {
        change(u"reduced-motion"_s, 1U);
        QVERIFY(Appearance::shared().prefersReducedMotion());
        QCOMPARE(QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration), 0);
        change(u"reduced-motion"_s, 0U);
        QVERIFY(!Appearance::shared().prefersReducedMotion());
    }

    void sameSettingAgainChangesNothing()
    {
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        m_portal->sendChange(Namespace, u"color-scheme"_s, 2U);
        m_portal->sendChange(Namespace, u"color-scheme"_s, 1U);
        QVERIFY(changed.wait());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Dark);
    }

    void widgetsTakeTheNewColours()
    {
        QWidget widget;
        widget.setFixedSize(20, 20);
        widget.show();
        QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(Qt::white));
        change(u"color-scheme"_s, 1U);
        QTRY_COMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(0x20, 0x22, 0x26));
    }

    void busyIndicatorStandsStillUnderReducedMotion()
    {
        BusyIndicator indicator;
        indicator.show();
        QVERIFY(indicator.isSpinning());
        change(u"reduced-motion"_s, 1U);
        QVERIFY(!indicator.isSpinning());
        QVERIFY(indicator.isVisible());
        indicator.hide();
        indicator.show();
        QVERIFY(!indicator.isSpinning());
        change(u"reduced-motion"_s, 0U);
        QVERIFY(indicator.isSpinning());
    }

    void textsAreReadable_data()
    {
        QTest::addColumn<Appearance::Scheme>("scheme");
        QTest::addColumn<QColor>("accent");
        QTest::newRow("light") << Appearance::Scheme::Light << QColor(0x2f, 0x6f, 0xde);
        QTest::newRow("dark") << Appearance::Scheme::Dark << QColor(0x4c, 0x8d, 0xff);
        QTest::newRow("light, yellow") << Appearance::Scheme::Light << QColor(0xff, 0xcc, 0x00);
        QTest::newRow("dark, purple") << Appearance::Scheme::Dark << QColor(0x91, 0x41, 0xac);
    }

    void textsAreReadable()
    {
        QFETCH(Appearance::Scheme, scheme);
        QFETCH(QColor, accent);
        const QPalette palette = appearancePalette(scheme, accent);
        const ChromeColors colors = ChromeColors::of(palette);
        QVERIFY(contrast(colors.text, colors.window) >= 7);
        QVERIFY(contrast(palette.color(QPalette::PlaceholderText), colors.window) >= 4.5);
        QVERIFY(contrast(palette.color(QPalette::PlaceholderText), colors.field) >= 4.5);
        QVERIFY(contrast(colors.secondaryText, colors.header) >= 4.5);
        QVERIFY(contrast(colors.text, colors.selectedRow) >= 7);
        QVERIFY(contrast(colors.accentText, colors.accent) >= 3);
    }

private:
    /// Sends a change and waits until the program has taken it in.
    void change(const QString &key, const QVariant &value)
    {
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        m_portal->sendChange(Namespace, key, value);
        QVERIFY(changed.wait());
    }

    Sandbox m_sandbox;
    QFont m_fontBefore;
    std::unique_ptr<FakePortal> m_portal;
};

PLOVENDIX_GUI_TEST(AppearanceTest)
#include "AppearanceTest.moc"
