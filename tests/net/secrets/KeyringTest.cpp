#include <net/secrets/KeychainSecretStore.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

/// With a real keyring: a session bus and a keyring daemon of this test's own.
class KeyringTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(u"dbus-daemon"_s).isEmpty() ||
            QStandardPaths::findExecutable(u"gnome-keyring-daemon"_s).isEmpty())
            QSKIP("no keyring daemon on this machine");
        startBus();
        startKeyring();
    }

    void cleanupTestCase()
    {
        for (QProcess *process : {&m_keyring, &m_bus}) {
            process->terminate();
            if (process->state() != QProcess::NotRunning)
                process->waitForFinished();
        }
    }

    void secretsAreKeptAndRemoved()
    {
        KeychainSecretStore store(
            [](const QString &, const std::function<void(bool)> &) { QFAIL("asked for a file"); },
            FileSecretStore(filePath()));
        QCOMPARE(read(store), u"(none)"_s);
        QVERIFY(write(store, u"a key, and “more”"_s));
        QCOMPARE(read(store), u"a key, and “more”"_s);
        QVERIFY(!QFileInfo::exists(filePath()));
        QVERIFY(write(store, {}));
        QCOMPARE(read(store), u"(none)"_s);
    }

    void keyringTakesOverFromTheFile()
    {
        const FileSecretStore file(filePath());
        QVERIFY(file.store(Secret::SubtitleKey, u"old"_s));
        KeychainSecretStore store({}, file);
        QCOMPARE(read(store), u"old"_s);
        QVERIFY(write(store, u"new"_s));
        QVERIFY(!QFileInfo::exists(filePath()));
        QCOMPARE(read(store), u"new"_s);
    }

    void fileHoldsTheLaterWord()
    {
        const FileSecretStore file(filePath());
        KeychainSecretStore store({}, file);
        QVERIFY(write(store, u"taken by the keyring"_s));
        QVERIFY(file.store(Secret::SubtitleKey, u"not taken, and in the file"_s));
        QCOMPARE(read(store), u"not taken, and in the file"_s);
        QVERIFY(write(store, {}));
        QCOMPARE(read(store), u"(none)"_s);
    }

    /// From here on the keyring stays locked, and nobody is there to open it.
    void removalThatALockedKeyringRefusesIsSaid()
    {
        KeychainSecretStore store({}, FileSecretStore(filePath()));
        QVERIFY(write(store, u"still there"_s));
        lockKeyring();
        QVERIFY(!write(store, {}));
    }

    void lockedKeyringIsNoLeaveToUseAFile()
    {
        lockKeyring();
        int asked = 0;
        KeychainSecretStore store(
            [&](const QString &reason, const std::function<void(bool)> &answer) {
                ++asked;
                QVERIFY(!reason.contains(u"my-key"_s));
                QVERIFY(!QFileInfo::exists(filePath()));
                answer(asked == 2);
            },
            FileSecretStore(filePath()));
        QVERIFY(!write(store, u"my-key"_s));
        QCOMPARE(asked, 1);
        QVERIFY(!QFileInfo::exists(filePath()));
        QVERIFY(write(store, u"my-key"_s));
        QCOMPARE(asked, 2);
        QCOMPARE(read(store), u"my-key"_s);
    }

private:
    void startBus()
    {
        m_bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s,
                                       u"--address=unix:dir="_s + m_sandbox.path(u"."_s)});
        QVERIFY(m_bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    }

    void startKeyring()
    {
        m_keyring.start(u"gnome-keyring-daemon"_s,
                        {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s,
                         u"--control-directory"_s, m_sandbox.path(u"control"_s)});
        QVERIFY(m_keyring.waitForStarted());
        m_keyring.write("password of this test");
        m_keyring.closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(keyringIsOpen(), WaitLimit);
    }

    /// Whether the daemon is on the bus and has unlocked the keyring that secrets go to. A call to a name
    /// that nobody has yet would make the bus start a second daemon, with a locked keyring.
    static bool keyringIsOpen()
    {
        if (!QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.freedesktop.secrets"_s))
            return false;
        auto ask = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                                  u"org.freedesktop.Secret.Service"_s, u"ReadAlias"_s);
        ask << u"default"_s;
        const QDBusReply<QDBusObjectPath> collection = QDBusConnection::sessionBus().call(ask);
        if (!collection.isValid() || collection.value().path() == "/"_L1)
            return false;
        auto get = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, collection.value().path(),
                                                  u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        get << u"org.freedesktop.Secret.Collection"_s << u"Locked"_s;
        const QDBusReply<QVariant> locked = QDBusConnection::sessionBus().call(get);
        return locked.isValid() && !locked.value().toBool();
    }

    static void lockKeyring()
    {
        auto lock =
            QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                           u"org.freedesktop.Secret.Service"_s, u"LockService"_s);
        QDBusConnection::sessionBus().call(lock);
        QVERIFY(!keyringIsOpen());
    }

    static QString read(KeychainSecretStore &store)
    {
        auto caught = std::make_shared<Caught<std::optional<QString>>>();
        store.read(Secret::SubtitleKey,
                   [caught](const Result<std::optional<QString>> &result) { caught->completion()(result); });
        if (!QTest::qWaitFor([&] { return caught->came(); }, WaitLimit) || !**caught)
            return u"(unreadable)"_s;
        return (**caught)->value_or(u"(none)"_s);
    }

    static bool write(KeychainSecretStore &store, const QString &text)
    {
        auto caught = std::make_shared<Caught<void>>();
        store.write(Secret::SubtitleKey, text,
                    [caught](const Result<void> &result) { caught->completion()(result); });
        return QTest::qWaitFor([&] { return caught->came(); }, WaitLimit) && (*caught)->hasValue();
    }

    QString filePath() const { return m_sandbox.path(u"config/secrets"_s); }

    Sandbox m_sandbox;
    QProcess m_bus;
    QProcess m_keyring;
};

PLOVENDIX_TEST(KeyringTest)
#include "KeyringTest.moc"
