#include "FakeWorkspace.h"

#include <features/delivery/ExternalAppInfo.h>
#include <tests/support/TestMain.h>

#include <QMetaProperty>
#include <QTest>

#include <type_traits>

using namespace Qt::StringLiterals;

namespace
{
const ExternalAppInfo Tessaly(u"tessaly3"_s, u"com.quorvane.Tessaly"_s, u"Tessaly"_s);
const ExternalAppInfo Verbrook(u"verbrook3"_s, u"com.quorvane.Verbrook"_s, u"Verbrook"_s);
const ExternalAppInfo Glimmet(u"glimmet"_s, u"com.quorvane.Glimmet"_s, u"Glimmet"_s);
} // namespace

class CompanionAppsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noneInstalledIsAnEmptyList()
    {
        FakeWorkspace workspace;
        workspace.installed = QStringList{u"org.example.Player"_s};
        QVERIFY(installedCompanionApps(workspace).isEmpty());
    }

    void allInstalledComeInFixedOrder()
    {
        FakeWorkspace workspace;
        workspace.installed =
            QStringList{u"com.quorvane.Glimmet"_s, u"com.quorvane.Tessaly"_s, u"com.quorvane.Verbrook"_s};
        QCOMPARE(installedCompanionApps(workspace), (QList<ExternalAppInfo>{Tessaly, Verbrook, Glimmet}));
    }

    void someInstalledKeepTheOrder()
    {
        FakeWorkspace workspace;
        workspace.installed = QStringList{u"com.quorvane.Glimmet"_s, u"com.quorvane.Tessaly"_s};
        QCOMPARE(installedCompanionApps(workspace), (QList<ExternalAppInfo>{Tessaly, Glimmet}));
    }

    void everyCallAsksAnew()
    {
        FakeWorkspace workspace;
        QVERIFY(installedCompanionApps(workspace).isEmpty());
        workspace.installed = QStringList{u"com.quorvane.Verbrook"_s};
        QCOMPARE(installedCompanionApps(workspace), QList<ExternalAppInfo>{Verbrook});
    }

    void senderIsNamedByTheWholeText_data()
    {
        QTest::addColumn<QString>("sender");
        QTest::addColumn<QString>("name");
        QTest::newRow("Verbrook") << u"verbrook3"_s << u"Verbrook"_s;
        QTest::newRow("Tessaly") << u"tessaly3"_s << u"Tessaly"_s;
        QTest::newRow("Glimmet") << u"glimmet"_s << u"Glimmet"_s;
        QTest::newRow("the one that comes along") << u"plovendix-mpv"_s << u"mpv"_s;
        QTest::newRow("without its number") << u"tessaly"_s << u"Unknown"_s;
        QTest::newRow("with a number") << u"glimmet3"_s << u"Unknown"_s;
        QTest::newRow("other case") << u"Tessaly3"_s << u"Unknown"_s;
        QTest::newRow("space behind") << u"tessaly3 "_s << u"Unknown"_s;
        QTest::newRow("empty") << u""_s << u"Unknown"_s;
        QTest::newRow("a web scheme") << u"https"_s << u"Unknown"_s;
    }
    void senderIsNamedByTheWholeText()
    {
        QFETCH(QString, sender);
        QFETCH(QString, name);
        QCOMPARE(companionAppName(sender), name);
    }

    void bindingsReadTheName()
    {
        const QMetaObject &meta = ExternalAppInfo::staticMetaObject;
        QCOMPARE(meta.property(meta.indexOfProperty("name")).readOnGadget(&Verbrook),
                 QVariant(u"Verbrook"_s));
    }

    void appIsMadeOnlyWithItsFields() { QVERIFY(!std::is_default_constructible_v<ExternalAppInfo>); }
};

PLOVENDIX_TEST(CompanionAppsTest)
#include "CompanionAppsTest.moc"
