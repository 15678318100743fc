#include <features/delivery/ExternalAppInfo.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/TestMain.h>

#include <QMetaProperty>
#include <QTest>

#include <type_traits>

using namespace Qt::StringLiterals;

class ExternalAppInfoTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void installedAppsComeInFixedOrder_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("schemes");
        QTest::newRow("none") << QStringList{u"org.example.Player"_s} << QStringList();
        QTest::newRow("some") << QStringList{u"com.quorvane.Glimmet"_s, u"com.quorvane.Tessaly"_s}
                              << QStringList{u"tessaly3 Tessaly"_s, u"glimmet Glimmet"_s};
        QTest::newRow("all") << QStringList{u"com.quorvane.Glimmet"_s, u"com.quorvane.Tessaly"_s,
                                            u"com.quorvane.Verbrook"_s}
                             << QStringList{u"tessaly3 Tessaly"_s, u"verbrook3 Verbrook"_s,
                                            u"glimmet Glimmet"_s};
    }
    void installedAppsComeInFixedOrder()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, schemes);
        FakeWorkspace workspace;
        QVERIFY(installedCompanionApps(workspace).isEmpty());
        workspace.installed = installed; // looked up anew
        QStringList found;
        const QMetaProperty name = ExternalAppInfo::staticMetaObject.property(0); // as bindings read it
        const auto apps = installedCompanionApps(workspace);
        for (const ExternalAppInfo &app : apps)
            found += app.urlScheme + u' ' + name.readOnGadget(&app).toString();
        QCOMPARE(found, schemes);
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
    }
    void senderIsNamedByTheWholeText()
    {
        QFETCH(QString, sender);
        QFETCH(QString, name);
        QCOMPARE(companionAppName(sender), name);
    }

    void appIsMadeOnlyWithItsFields() { QVERIFY(!std::is_default_constructible_v<ExternalAppInfo>); }
};

PLOVENDIX_TEST(ExternalAppInfoTest)
#include "ExternalAppInfoTest.moc"
