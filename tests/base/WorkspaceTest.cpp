#include "ScopedVariable.h"

#include <base/GObjectPointer.h>
#include <base/Workspace.h>
#include <tests/support/Sandbox.h>

#include <gio/gio.h>
#include <tests/support/TestMain.h>

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

/// A file browser on the session bus that keeps what it was asked to show.
class BrowserOnTheBus : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown() const { return m_shown; }

public Q_SLOTS:
    Q_SCRIPTABLE void ShowItems(const QStringList &uris, const QString &) { m_shown += uris; }

private:
    QStringList m_shown;
};

/// Handlers are real desktop entries in a private place, whose program writes down what it was given.
class WorkspaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void init() { QFile::remove(m_sandbox.path(u"received"_s)); }

    void cleanupTestCase()
    {
        QDBusConnection::disconnectFromBus(u"browser"_s);
        if (m_bus)
            g_test_dbus_stop(m_bus.get());
    }

    void urlReachesItsHandlerUnchanged()
    {
        const QString text = u"tessaly3://plovendix-file?filepath=/home/u/F%C3%BC%20%26%20%25.srt&docid=42"_s;
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl(text)));
        QTRY_COMPARE(received(), text);
    }

    void capitalsInTheSchemeDoNotMatter()
    {
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl(u"TESSALY3://plovendix-file"_s)));
        QTRY_COMPARE(received(), u"tessaly3://plovendix-file"_s);
    }

    void schemeWithoutAHandlerIsNotOpened()
    {
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl(u"verbrook3://plovendix-file?docid=1"_s)));
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl(u"https://example.org/"_s)));
    }

    void handlerWhoseProgramIsGoneDoesNotCount()
    {
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl(u"glimmet://plovendix-file"_s)));
        QCOMPARE(Workspace::sharedWorkspace().absolutePathForAppBundleWithIdentifier(u"example.Gone"_s),
                 std::nullopt);
    }

    void urlThatIsNoneIsNotOpened_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("empty") << QUrl();
        QTest::newRow("no scheme") << QUrl(u"//plovendix-file?filepath=/a"_s);
        QTest::newRow("path") << QUrl(u"/a/b"_s);
        QTest::newRow("invalid") << QUrl(u"http://[::1"_s, QUrl::StrictMode);
    }

    void urlThatIsNoneIsNotOpened()
    {
        QFETCH(QUrl, url);
        QVERIFY(!Workspace::sharedWorkspace().openURL(url));
    }

    void anyThreadMayOpen()
    {
        std::atomic<bool> isOpened = false;
        std::atomic<bool> isFound = false;
        std::thread([&] {
            isOpened = Workspace::sharedWorkspace().openURL(QUrl(u"tessaly3://from-a-thread"_s));
            isFound = Workspace::sharedWorkspace()
                          .absolutePathForAppBundleWithIdentifier(u"com.quorvane.Tessaly"_s)
                          .has_value();
        }).join();
        QVERIFY(isOpened.load());
        QVERIFY(isFound.load());
        QTRY_COMPARE(received(), u"tessaly3://from-a-thread"_s);
    }

    void handlerDoesNotGetOurStartUpToken()
    {
        const ScopedVariable startUp("DESKTOP_STARTUP_ID", "ours");
        const ScopedVariable activation("XDG_ACTIVATION_TOKEN", "ours too");
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl(u"tessaly3://token"_s)));
        QTRY_COMPARE(received(), u"tessaly3://token"_s);
    }

    void handlerDoesNotGetOurSecrets()
    {
        const ScopedVariable key("PLOVENDIX_SUBTITLE_API_KEY", "secret key");
        const ScopedVariable password("PLOVENDIX_SUBTITLE_PASSWORD", "secret password");
        const ScopedVariable films("PLOVENDIX_METADATA_API_KEY", "secret film key");
        const ScopedVariable other("OF_THE_PERSON", "stays");
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl(u"surroundings://show"_s)));
        QTRY_VERIFY(!received().isEmpty());
        QVERIFY2(!received().contains(u"secret"_s) && !received().contains(u"PLOVENDIX_"_s),
                 qPrintable(received()));
        QVERIFY2(received().contains(u"OF_THE_PERSON=stays"_s), qPrintable(received()));
        QCOMPARE(qgetenv("PLOVENDIX_SUBTITLE_API_KEY"), QByteArray("secret key"));
    }

    void placesAreOpenedByTheDesktopItself()
    {
        QVERIFY(Workspace::sharedWorkspace().opensItself(u"file"_s));
        QVERIFY(Workspace::sharedWorkspace().opensItself(u"FILE"_s));
        QVERIFY(!Workspace::sharedWorkspace().opensItself(u"tessaly3"_s));
        QVERIFY(!Workspace::sharedWorkspace().opensItself(QString()));
    }

    void installedApplicationIsFound_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("path");
        QTest::newRow("the person's own")
            << u"com.quorvane.Tessaly"_s << u"xdg_data_home/applications/com.quorvane.Tessaly.desktop"_s;
        QTest::newRow("everybody's") << u"example.ForAll"_s << u"all/applications/example.ForAll.desktop"_s;
        QTest::newRow("in a folder") << u"example-InFolder"_s
                                     << u"xdg_data_home/applications/example/InFolder.desktop"_s;
    }

    void installedApplicationIsFound()
    {
        QFETCH(QString, identifier);
        QFETCH(QString, path);
        QCOMPARE(Workspace::sharedWorkspace().absolutePathForAppBundleWithIdentifier(identifier),
                 m_sandbox.path(path));
    }

    void applicationThatIsNotInstalledIsNotFound_data()
    {
        QTest::addColumn<QString>("identifier");
        for (const char *identifier :
             {"com.quorvane.Glimmet", "", "../applications/com.quorvane.Tessaly", "example.Hidden",
              "com.quorvane.tessaly", "com.quorvane.Tessaly.desktop"})
            QTest::newRow(identifier) << QString::fromLatin1(identifier);
    }

    void applicationThatIsNotInstalledIsNotFound()
    {
        QFETCH(QString, identifier);
        QCOMPARE(Workspace::sharedWorkspace().absolutePathForAppBundleWithIdentifier(identifier),
                 std::nullopt);
    }

    void folderIsOpenedWithoutASessionBus()
    {
        const QString file = m_sandbox.writeFile(u"saved here/A.en.srt"_s, "x");
        QVERIFY(Workspace::sharedWorkspace().showInFileBrowser(QUrl::fromLocalFile(file)));
        const QString folder =
            QUrl::fromLocalFile(m_sandbox.path(u"saved here"_s)).toString(QUrl::FullyEncoded);
        QTRY_VERIFY(!received().isEmpty());
        QVERIFY2(received() == folder || received() == m_sandbox.path(u"saved here"_s),
                 qPrintable(received()));
    }

    void fileIsShownByTheBrowserOnTheBus()
    {
        m_bus.reset(g_test_dbus_new(G_TEST_DBUS_NONE));
        g_test_dbus_up(m_bus.get());
        const QString address = QString::fromLatin1(g_test_dbus_get_bus_address(m_bus.get()));
        const QString file = m_sandbox.writeFile(u"saved here/f ü.srt"_s, "x");
        const QUrl url = QUrl::fromLocalFile(file);
        // A bus without a browser on it: the folder is opened instead.
        QVERIFY(Workspace::sharedWorkspace().showInFileBrowser(url));
        QTRY_VERIFY(!received().isEmpty());
        init();

        QDBusConnection bus = QDBusConnection::connectToBus(address, u"browser"_s);
        BrowserOnTheBus browser;
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, &browser,
                                   QDBusConnection::ExportScriptableSlots));
        QVERIFY(bus.registerService(u"org.freedesktop.FileManager1"_s));
        QVERIFY(Workspace::sharedWorkspace().showInFileBrowser(url));
        QTRY_COMPARE(browser.shown(), QStringList{url.toString(QUrl::FullyEncoded)});
        QVERIFY(received().isEmpty());
        bus.unregisterObject(u"/org/freedesktop/FileManager1"_s);
    }

    void nothingIsShownForOtherURLs()
    {
        QVERIFY(!Workspace::sharedWorkspace().showInFileBrowser(QUrl(u"https://example.org/a"_s)));
        QVERIFY(!Workspace::sharedWorkspace().showInFileBrowser(QUrl()));
        QVERIFY(received().isEmpty());
    }

    void sharedWorkspaceMayBeReplaced()
    {
        class Everything final : public Workspace
        {
        public:
            bool openURL(const QUrl &) override { return true; }
        };
        Workspace::setSharedWorkspace(std::make_shared<Everything>());
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl()));
        Workspace::setSharedWorkspace({});
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl()));
    }

private:
    void installHandler(const QString &identifier, const QString &program, const QString &types) const;

    QString received() const
    {
        QFile file(m_sandbox.path(u"received"_s));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    Sandbox m_sandbox;
    GObjectPointer<GTestDBus> m_bus;
};

void WorkspaceTest::installHandler(const QString &identifier, const QString &program,
                                   const QString &types) const
{
    const QString entry = u"[Desktop Entry]\nType=Application\nName=%1\nExec=\"%2\" %u\nMimeType=%3\n"_s.arg(
        identifier, program, types);
    m_sandbox.writeFile(u"xdg_data_home/applications/%1.desktop"_s.arg(identifier), entry.toUtf8());
}

void WorkspaceTest::initTestCase()
{
    // Before the first question, because the library reads these variables once.
    qputenv("XDG_DATA_DIRS", (m_sandbox.path(u"no data"_s) + u':' + m_sandbox.path(u"all"_s)).toUtf8());
    qputenv("XDG_CONFIG_DIRS", m_sandbox.path(u"no config"_s).toUtf8());
    qputenv("XDG_RUNTIME_DIR", m_sandbox.path(u"no bus"_s).toUtf8());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("DISPLAY");
    const QByteArray script =
        "#!/bin/sh\nprintf '%s %s' \"$1\" \"${DESKTOP_STARTUP_ID}${XDG_ACTIVATION_TOKEN}\" > \"" +
        m_sandbox.path(u"half"_s).toUtf8() + "\"\nmv \"" + m_sandbox.path(u"half"_s).toUtf8() + "\" \"" +
        m_sandbox.path(u"received"_s).toUtf8() + "\"\n";
    const QString program = m_sandbox.writeFile(u"bin/handler"_s, script);
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    installHandler(u"com.quorvane.Tessaly"_s, program, u"x-scheme-handler/tessaly3;"_s);
    const QString revealing = m_sandbox.writeFile(
        u"bin/revealing"_s, "#!/bin/sh\nenv > \"" + m_sandbox.path(u"half"_s).toUtf8() + "\"\nmv \"" +
                                m_sandbox.path(u"half"_s).toUtf8() + "\" \"" +
                                m_sandbox.path(u"received"_s).toUtf8() + "\"\n");
    QVERIFY(QFile::setPermissions(revealing, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    installHandler(u"example.Revealing"_s, revealing, u"x-scheme-handler/surroundings;"_s);
    installHandler(u"example.Folders"_s, program, u"inode/directory;"_s);
    installHandler(u"example.Gone"_s, m_sandbox.path(u"bin/gone"_s), u"x-scheme-handler/glimmet;"_s);
    for (const auto &name :
         {u"all/applications/example.ForAll"_s, u"xdg_data_home/applications/example/InFolder"_s})
        m_sandbox.writeFile(name + u".desktop"_s,
                            "[Desktop Entry]\nType=Application\nName=a\nExec=/bin/true\n");
    m_sandbox.writeFile(u"xdg_data_home/applications/example.Hidden.desktop"_s,
                        "[Desktop Entry]\nType=Application\nName=h\nExec=/bin/true\nHidden=true\n");
    m_sandbox.writeFile(
        u"xdg_data_home/applications/mimeinfo.cache"_s,
        "[MIME Cache]\nx-scheme-handler/tessaly3=com.quorvane.Tessaly.desktop;\n"
        "x-scheme-handler/surroundings=example.Revealing.desktop;\n"
        "inode/directory=example.Folders.desktop;\nx-scheme-handler/glimmet=example.Gone.desktop;\n");
}

PLOVENDIX_TEST(WorkspaceTest)
#include "WorkspaceTest.moc"
