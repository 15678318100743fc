#include "ScopedVariable.h"

#include <base/GObjectPointer.h>
#include <base/Workspace.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <gio/gio.h>

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
    void initTestCase()
    {
        // Before the first question, because the library reads these variables once.
        qputenv("XDG_DATA_DIRS", (m_sandbox.path(u"no data"_s) + u':' + m_sandbox.path(u"all"_s)).toUtf8());
        qputenv("XDG_CONFIG_DIRS", m_sandbox.path(u"no config"_s).toUtf8());
        qputenv("XDG_RUNTIME_DIR", m_sandbox.path(u"no bus"_s).toUtf8());
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("DISPLAY");
        const QString own = u"xdg_data_home/applications/"_s;
        const QString program = writeProgram(u"bin/handler"_s, "printf '%s' \"$1\"");
        install(own + u"com.quorvane.Tessaly"_s, program, u"MimeType=x-scheme-handler/tessaly3;"_s);
        install(own + u"example.Folders"_s, program, u"MimeType=inode/directory;"_s);
        install(own + u"example.Revealing"_s, writeProgram(u"bin/revealing"_s, "env"),
                u"MimeType=x-scheme-handler/surroundings;"_s);
        install(own + u"example.Gone"_s, m_sandbox.path(u"bin/gone"_s),
                u"MimeType=x-scheme-handler/glimmet;"_s);
        install(own + u"example.Hidden"_s, u"/bin/true"_s, u"Hidden=true"_s);
        install(own + u"example/InFolder"_s);
        install(u"all/applications/example.ForAll"_s);
        m_sandbox.writeFile(
            own + u"mimeinfo.cache"_s,
            "[MIME Cache]\nx-scheme-handler/tessaly3=com.quorvane.Tessaly.desktop;\n"
            "x-scheme-handler/surroundings=example.Revealing.desktop;\n"
            "inode/directory=example.Folders.desktop;\nx-scheme-handler/glimmet=example.Gone.desktop;\n");
    }

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
        QVERIFY(Workspace::sharedWorkspace().openURL(
            QUrl(QString(text).replace(u"tessaly3:"_s, u"TESSALY3:"_s))));
        QTRY_COMPARE(received(), text);
    }

    void otherURLsAreNotOpened_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("no handler") << QUrl(u"verbrook3://plovendix-file?docid=1"_s);
        QTest::newRow("no browser") << QUrl(u"https://example.org/"_s);
        QTest::newRow("empty") << QUrl();
        QTest::newRow("no scheme") << QUrl(u"//plovendix-file?filepath=/a"_s);
        QTest::newRow("path") << QUrl(u"/a/b"_s);
        QTest::newRow("invalid") << QUrl(u"http://[::1"_s, QUrl::StrictMode);
    }

    void otherURLsAreNotOpened()
    {
        QFETCH(QUrl, url);
        QVERIFY(!Workspace::sharedWorkspace().openURL(url));
        QVERIFY(!Workspace::sharedWorkspace().showInFileBrowser(url));
        QVERIFY(received().isEmpty());
        // These do nothing on this platform, whatever the URL.
        QVERIFY(!ApplicationURLs::canOpenURL(url));
        QVERIFY(!ApplicationURLs::openURL(QUrl(u"tessaly3://x"_s)));
        QVERIFY(received().isEmpty());
    }

    void handlerWhoseProgramIsGoneDoesNotCount()
    {
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl(u"glimmet://plovendix-file"_s)));
        QCOMPARE(Workspace::sharedWorkspace().absolutePathForAppBundleWithIdentifier(u"example.Gone"_s),
                 std::nullopt);
    }

    void handlerDoesNotGetOurSecretsAndTokens()
    {
        const ScopedVariable key("PLOVENDIX_SUBTITLE_API_KEY", "secret key");
        const ScopedVariable password("PLOVENDIX_SUBTITLE_PASSWORD", "secret password");
        const ScopedVariable startUp("DESKTOP_STARTUP_ID", "secret token");
        const ScopedVariable activation("XDG_ACTIVATION_TOKEN", "secret token");
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

    void sharedWorkspaceMayBeReplaced()
    {
        const auto fake = FakeWorkspace::install();
        QVERIFY(Workspace::sharedWorkspace().openURL(QUrl()));
        Workspace::setSharedWorkspace({});
        QVERIFY(!Workspace::sharedWorkspace().openURL(QUrl()));
    }

private:
    /// An executable script that leaves what `command` prints in the file "received".
    QString writeProgram(const QString &name, const QByteArray &command) const
    {
        const QByteArray half = m_sandbox.path(u"half"_s).toUtf8();
        const QByteArray whole = m_sandbox.path(u"received"_s).toUtf8();
        const QString program = m_sandbox.writeFile(name, "#!/bin/sh\n" + command + " > \"" + half +
                                                              "\"\nmv \"" + half + "\" \"" + whole + "\"\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return program;
    }

    void install(const QString &name, const QString &program = u"/bin/true"_s, const QString &more = {}) const
    {
        const QString entry = u"[Desktop Entry]\nType=Application\nName=a\nExec=\"%1\" %u\n%2\n"_s;
        m_sandbox.writeFile(name + u".desktop"_s, entry.arg(program, more).toUtf8());
    }

    QString received() const
    {
        QFile file(m_sandbox.path(u"received"_s));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    Sandbox m_sandbox;
    GObjectPointer<GTestDBus> m_bus;
};

PLOVENDIX_TEST(WorkspaceTest)
#include "WorkspaceTest.moc"
