#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/Appearance.h>
#include <ui/style/ChromeColors.h>

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

/// A desktop without a session bus whose platform theme is dark.
class AppearanceFallbackTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
        qunsetenv("DISPLAY");
    }

private Q_SLOTS:
    void followsTheThemeWithoutABus()
    {
        QPalette theme;
        theme.setColor(QPalette::Window, QColor(40, 40, 40));
        theme.setColor(QPalette::WindowText, QColor(230, 230, 230));
        QApplication::setPalette(theme);
        Appearance::shared().install();
        QCOMPARE(Appearance::shared().scheme(), Appearance::Scheme::Dark);
        QVERIFY(ChromeColors::isDark(QApplication::palette()));
        QVERIFY(!Appearance::shared().prefersReducedMotion());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(AppearanceFallbackTest)
#include "AppearanceFallbackTest.moc"
