#include <base/Workspace.h>
#include <features/search/MainViewController.h>
#include <model/LocaleUtilities.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QMetaProperty>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A desktop with the applications that a test installs.
class Desktop final : public Workspace
{
public:
    QStringList installed;

    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier) override
    {
        return installed.contains(identifier) ? std::optional(identifier) : std::nullopt;
    }
};
} // namespace

/// The lists that the main view's controller offers to bindings, read as a binding reads them.
class BoundListsTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

private Q_SLOTS:
    void cleanup() { Workspace::setSharedWorkspace({}); }

    void languagesAreThoseOfTheControllersConstruction()
    {
        const auto controller = ViewController::make<MainViewController>();
        const QList<Language> languages = LocaleUtilities::shared().languages();
        QCOMPARE(controller->property("languagesArray").value<QList<Language>>(), languages);
        qputenv("LC_ALL", "de_DE.UTF-8");
        const auto later = controller->property("languagesArray").value<QList<Language>>();
        qputenv("LC_ALL", "en_US.UTF-8");
        QCOMPARE(later.first().name(), u"English"_s);
    }

    void companionsAreReadAnewEachTime()
    {
        const auto desktop = std::make_shared<Desktop>();
        Workspace::setSharedWorkspace(desktop);
        const auto controller = ViewController::make<MainViewController>();
        const auto names = [&] {
            QStringList found;
            const auto apps = controller->property("quorvaneAppsArray").value<QList<ExternalAppInfo>>();
            for (const ExternalAppInfo &app : apps)
                found += app.name;
            return found;
        };
        QCOMPARE(names(), QStringList());
        desktop->installed = QStringList{u"com.quorvane.Verbrook"_s, u"com.quorvane.Tessaly"_s};
        QCOMPARE(names(), QStringList({u"Tessaly"_s, u"Verbrook"_s}));
        desktop->installed = QStringList{u"com.quorvane.Glimmet"_s};
        QCOMPARE(names(), QStringList{u"Glimmet"_s});
        // A property that never changes would be read once by a binding.
        const QMetaObject &meta = MainViewController::staticMetaObject;
        QVERIFY(!meta.property(meta.indexOfProperty("quorvaneAppsArray")).isConstant());
    }
};

PLOVENDIX_GUI_TEST(BoundListsTest)
#include "BoundListsTest.moc"
