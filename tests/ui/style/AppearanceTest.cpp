#include "FakePortal.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/Appearance.h>
#include <ui/style/BusyIndicator.h>
#include <ui/style/ChromeColors.h>
#include <ui/style/ChromeStyle.h>

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{
const auto Desktop = u"org.freedesktop.appearance"_s;
const auto Interface = u"org.gnome.desktop.interface"_s;
const QColor LightAccent(0x2f, 0x6f, 0xde);
const QColor DarkAccent(0x4c, 0x8d, 0xff);

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

class AppearanceTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { bus = std::make_unique<PrivateBus>(); }

private Q_SLOTS:
    void init()
    {
        QVERIFY2(!bus->address().isEmpty(), "No session bus could be started");
        setTheme(Qt::white, Qt::black);
        m_portal = std::make_unique<FakePortal>(bus->address());
        m_portal->answer = QVariant::fromValue(SettingsOfNamespaces());
    }
    void cleanup()
    {
        m_portal.reset();
        // The next test gets another object, as in a new process.
        const std::unique_ptr<Appearance> last(&Appearance::shared());
    }
    void cleanupTestCase() { bus.reset(); }

    void installsStyleAndPaletteBeforeThePortalAnswers()
    {
        const QFont font = QApplication::font();
        m_portal->answer = QVariant::fromValue(SettingsOfNamespaces{
            {Desktop, {{u"color-scheme"_s, 1U}, {u"accent-color"_s, FakePortal::color(1, 0.5, 0)}}},
            {Interface, {{u"enable-animations"_s, false}}}});
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        Appearance::shared().install();
        QVERIFY(qobject_cast<ChromeStyle *>(QApplication::style()));
        QCOMPARE(QApplication::font(), font);
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::white));
        QCOMPARE(look(), u"light #2f6fde moving"_s);
        // The fake answers from this thread, so an install that waited for it would wait in vain.
        QCOMPARE(m_portal->questions, 0);
        QVERIFY(changed.wait());
        QCOMPARE(look(), u"dark #ff8000 still"_s);
        QCOMPARE(changed.size(), 1);
    }

    void changesAreFollowed_data()
    {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        // Before each, the theme is dark, and the portal says light, a red accent and no reduced motion.
        const auto row = [](const char *name, const QString &group, const char *key, const QVariant &value,
                            const char *expected) {
            QTest::newRow(name) << group << QString::fromLatin1(key) << value
                                << QString::fromLatin1(expected);
        };
        row("dark", Desktop, "color-scheme", 1U, "dark #ff0000 moving");
        row("no preference", Desktop, "color-scheme", 0U, "dark #ff0000 moving");
        row("a scheme of the future", Desktop, "color-scheme", 9U, "dark #ff0000 moving");
        row("accent", Desktop, "accent-color", FakePortal::color(0, 0.2, 1), "light #0033ff moving");
        row("reduced motion", Desktop, "reduced-motion", 1U, "light #ff0000 still");
        row("no animations", Interface, "enable-animations", false, "light #ff0000 still");
        row("negative colour", Desktop, "accent-color", FakePortal::color(-1, 0, 0), "light #2f6fde moving");
        row("too much", Desktop, "accent-color", FakePortal::color(0, 0, 1.01), "light #2f6fde moving");
        row("no number", Desktop, "accent-color",
            FakePortal::color(0, std::numeric_limits<double>::quiet_NaN(), 0), "light #2f6fde moving");
        row("colour as text", Desktop, "accent-color", u"#00ff00"_s, "light #2f6fde moving");
        row("list of numbers", Desktop, "accent-color", QVariant::fromValue(QList<double>{1, 0, 0}),
            "light #2f6fde moving");
        row("scheme as text", Desktop, "color-scheme", u"dark"_s, "light #ff0000 moving");
        row("scheme as a structure", Desktop, "color-scheme", FakePortal::color(0, 0, 0),
            "light #ff0000 moving");
        row("motion as text", Desktop, "reduced-motion", u"1"_s, "light #ff0000 moving");
        row("animations as a number", Interface, "enable-animations", 0U, "light #ff0000 moving");
        row("unknown key", Desktop, "colour-scheme", 1U, "light #ff0000 moving");
        row("another namespace", u"org.example"_s, "color-scheme", 1U, "light #ff0000 moving");
        row("animations of the wrong namespace", Desktop, "enable-animations", false, "light #ff0000 moving");
    }
    void changesAreFollowed()
    {
        QFETCH(QString, group);
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QString, expected);
        qDBusRegisterMetaType<QList<double>>();
        m_portal->answer = QVariant::fromValue(SettingsOfNamespaces{
            {Desktop, {{u"color-scheme"_s, 2U}, {u"accent-color"_s, FakePortal::color(1, 0, 0)}}}});
        setTheme(Qt::black, Qt::white);
        Appearance::shared().install();
        QTRY_COMPARE(look(), u"light #ff0000 moving"_s);
        QStringList looks;
        connect(&Appearance::shared(), &Appearance::changed, this, [&] { looks += look(); });
        m_portal->sendChange(group, key, value);
        // A last change shows that the one before has arrived.
        m_portal->sendChange(Desktop, u"accent-color"_s, FakePortal::color(0, 1, 0));
        QTRY_VERIFY(!looks.isEmpty() && looks.last().contains(u"#00ff00"_s));
        QCOMPARE(looks.size() > 1 ? looks.first() : u"light #ff0000 moving"_s, expected);
    }

    void sameSettingAgainChangesNothing()
    {
        Appearance::shared().install();
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        m_portal->sendChange(Desktop, u"color-scheme"_s, 2U);
        m_portal->sendChange(Desktop, u"color-scheme"_s, 1U);
        QVERIFY(changed.wait());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(look(), u"dark #4c8dff moving"_s);
    }

    void answerOfAnotherShapeIsIgnored_data()
    {
        QTest::addColumn<QVariant>("answer");
        QTest::newRow("refusal") << QVariant();
        QTest::newRow("text") << QVariant(u"dark"_s);
        QTest::newRow("flat") << QVariant(QVariantMap{{u"color-scheme"_s, 1U}});
    }
    void answerOfAnotherShapeIsIgnored()
    {
        QFETCH(QVariant, answer);
        m_portal->answer = answer;
        Appearance::shared().install();
        QTRY_COMPARE(m_portal->questions, 1);
        QSignalSpy changed(&Appearance::shared(), &Appearance::changed);
        m_portal->sendChange(Desktop, u"reduced-motion"_s, 1U);
        QVERIFY(changed.wait());
        QCOMPARE(look(), u"light #2f6fde still"_s);
    }

    void portalThatStartsLaterIsFollowed()
    {
        m_portal.reset();
        Appearance::shared().install();
        m_portal = std::make_unique<FakePortal>(bus->address());
        m_portal->sendChange(Desktop, u"color-scheme"_s, 1U);
        QTRY_COMPARE(look(), u"dark #4c8dff moving"_s);
    }

    void themeCountsWithoutABus()
    {
        const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
        setTheme(QColor(40, 40, 40), QColor(230, 230, 230));
        Appearance::shared().install();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        qputenv("XDG_RUNTIME_DIR", runtime);
        QCOMPARE(look(), u"dark #4c8dff moving"_s);
        QVERIFY(ChromeColors::isDark(QApplication::palette()));
    }

    void widgetsTakeTheNewColours()
    {
        Appearance::shared().install();
        QWidget widget;
        widget.setFixedSize(20, 20);
        widget.show();
        QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(Qt::white));
        m_portal->sendChange(Desktop, u"color-scheme"_s, 1U);
        QTRY_COMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(0x20, 0x22, 0x26));
        QCOMPARE(QApplication::palette().color(QPalette::Highlight), DarkAccent);
    }

    void busyIndicatorTurnsWhileVisibleAndNotUnderReducedMotion()
    {
        Appearance::shared().install();
        QWidget parent;
        auto *indicator = new BusyIndicator(&parent);
        QCOMPARE(QAccessible::queryAccessibleInterface(indicator)->text(QAccessible::Name), u"Searching"_s);
        QVERIFY(!indicator->isSpinning());
        parent.show();
        QVERIFY(indicator->isSpinning());
        const QImage first = indicator->grab().toImage();
        QTRY_VERIFY(indicator->grab().toImage() != first);
        indicator->hide();
        QVERIFY(!indicator->isSpinning());
        indicator->show();
        QVERIFY(indicator->isSpinning());
        m_portal->sendChange(Desktop, u"reduced-motion"_s, 1U);
        QTRY_VERIFY(!indicator->isSpinning());
        QCOMPARE(QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration), 0);
        indicator->hide();
        indicator->show();
        QVERIFY(!indicator->isSpinning());
        m_portal->sendChange(Desktop, u"reduced-motion"_s, 0U);
        QTRY_VERIFY(indicator->isSpinning());
    }

    void textsAreReadable_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<QColor>("accent");
        QTest::newRow("light") << false << LightAccent;
        QTest::newRow("dark") << true << DarkAccent;
        QTest::newRow("light, yellow") << false << QColor(0xff, 0xcc, 0x00);
        QTest::newRow("dark, purple") << true << QColor(0x91, 0x41, 0xac);
    }
    void textsAreReadable()
    {
        QFETCH(bool, dark);
        QFETCH(QColor, accent);
        const QPalette palette = ChromeColors::paletteFor(dark, accent);
        const ChromeColors colors = ChromeColors::of(palette);
        QVERIFY(contrast(colors.text, colors.window) >= 7);
        QVERIFY(contrast(palette.color(QPalette::PlaceholderText), colors.window) >= 4.5);
        QVERIFY(contrast(palette.color(QPalette::PlaceholderText), colors.field) >= 4.5);
        QVERIFY(contrast(colors.secondaryText, colors.header) >= 4.5);
        QVERIFY(contrast(colors.text, colors.selectedRow) >= 7);
        QVERIFY(contrast(colors.accentText, colors.accent) >= 3);
    }

private:
    static void setTheme(const QColor &window, const QColor &text)
    {
        QPalette theme;
        theme.setColor(QPalette::Window, window);
        theme.setColor(QPalette::WindowText, text);
        QApplication::setPalette(theme);
    }

    static QString look()
    {
        const Appearance &appearance = Appearance::shared();
        return u"%1 %2 %3"_s.arg(appearance.scheme() == Appearance::Scheme::Dark ? u"dark" : u"light",
                                 appearance.accentColor().name(),
                                 appearance.prefersReducedMotion() ? u"still" : u"moving");
    }

    Sandbox m_sandbox;
    std::unique_ptr<FakePortal> m_portal;
};

PLOVENDIX_GUI_TEST(AppearanceTest)
#include "AppearanceTest.moc"
