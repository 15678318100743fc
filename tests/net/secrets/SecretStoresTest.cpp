#include <base/FileWriting.h>
#include <base/MainQueue.h>
#include <net/Redactor.h>
#include <net/secrets/Credentials.h>
#include <net/secrets/KeychainSecretStore.h>
#include <tests/support/FakeSecretStore.h>
#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
Credentials loaded(SecretStore &store, std::optional<base::Error> *failure = nullptr)
{
    std::optional<Credentials> credentials;
    loadCredentials(store, [&](const Credentials &read, const std::optional<base::Error> &why) {
        credentials = read;
        if (failure)
            *failure = why;
    });
    const bool early = credentials.has_value();
    const bool came = QTest::qWaitFor([&] { return credentials.has_value(); }, WaitLimit);
    return early || !came ? Credentials{u"(never)"_s, {}, {}} : *credentials;
}
} // namespace

class SecretStoresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // No keyring can be reached in here, whatever runs on this machine.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + m_sandbox.path(u"no-bus"_s).toUtf8());
        qunsetenv("PLOVENDIX_SUBTITLE_API_KEY");
        QVERIFY(QDir(m_sandbox.path(u"config"_s)).removeRecursively());
    }
    void cleanup() { MainQueue::shared().clear(); }

    void environmentOverridesTheStore()
    {
        FakeSecretStore store;
        store.kept = {{u"SubtitleServiceKey"_s, u"stored"_s},
                      {u"SubtitleServicePassword"_s, u"pass word "_s}};
        QCOMPARE(loaded(store), (Credentials{u"stored"_s, u"pass word "_s, {}}));
        qputenv("PLOVENDIX_SUBTITLE_API_KEY", "given");
        QCOMPARE(loaded(store), (Credentials{u"given"_s, u"pass word "_s, {}}));
        qputenv("PLOVENDIX_SUBTITLE_API_KEY", "");
        QCOMPARE(loaded(store).subtitleKey, u"stored"_s);
    }

    void pastedLineEndsAreNoPartOfAKey()
    {
        FakeSecretStore store;
        store.kept = {{u"SubtitleServiceKey"_s, u" a-long-key\r\nX-Other: header\n"_s}};
        QVERIFY(!loaded(store).subtitleKey.contains(u'\n'));
        QVERIFY(!loaded(store).subtitleKey.contains(u'\r'));
    }

    void whatIsReadAppearsInNoLog()
    {
        FakeSecretStore store;
        store.kept = {{u"MetadataServiceKey"_s, u"very-hush"_s}};
        QCOMPARE(loaded(store).metadataKey, u"very-hush"_s);
        QVERIFY(!redacted(u"the server said very-hush"_s).contains(u"very-hush"_s));
    }

    void storeThatCannotBeReadHasNone()
    {
        FakeSecretStore store;
        store.failure = base::Error{u"x"_s, 1, u"locked"_s, u"locked"_s};
        std::optional<base::Error> failure;
        QCOMPARE(loaded(store, &failure), Credentials());
        QVERIFY(failure);
        QCOMPARE(failure->localizedDescription, u"locked"_s);
        store.failure.reset();
        loaded(store, &failure);
        QVERIFY(!failure);
    }

    void fileKeepsThemForThePersonAlone()
    {
        const FileSecretStore store(filePath());
        QVERIFY(!store.lookUp(Secret::SubtitleKey).value());
        QVERIFY(store.store(Secret::SubtitleKey, u"key"_s));
        QVERIFY(store.store(Secret::SubtitlePassword, u"word"_s));
        QCOMPARE(store.lookUp(Secret::SubtitleKey).value(), u"key"_s);
        const QFile::Permissions mine =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFile::permissions(filePath()), mine);
        QVERIFY(store.store(Secret::SubtitleKey, {}));
        QVERIFY(!store.lookUp(Secret::SubtitleKey).value());
        QCOMPARE(store.lookUp(Secret::SubtitlePassword).value(), u"word"_s);
        QVERIFY(store.store(Secret::SubtitlePassword, {}));
        QVERIFY(!QFileInfo::exists(filePath()));
    }

    void openedFileIsClosedAgain()
    {
        m_sandbox.writeFile(u"config/secrets"_s, "{}");
        QVERIFY(QFile::setPermissions(filePath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
        QVERIFY(FileSecretStore(filePath()).store(Secret::SubtitleKey, u"key"_s));
        QVERIFY(!(QFile::permissions(filePath()) & QFile::ReadOther));
    }

    void damagedFileIsKeptAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("cut off") << QByteArray("{\"SubtitleServiceKey\": \"ke");
        QTest::newRow("another kind") << QByteArray("[]");
        QTest::newRow("too large") << QByteArray(100'000, 'x');
    }
    void damagedFileIsKeptAside()
    {
        QFETCH(const QByteArray, content);
        m_sandbox.writeFile(u"config/secrets"_s, content);
        FileSecretStore store(filePath());
        Caught<std::optional<QString>> read;
        store.read(Secret::SubtitleKey, read.completion());
        QVERIFY(read.error().detail.endsWith(u"is damaged"_s));
        QCOMPARE(contentOf(filePath()), content);

        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"secrets was damaged and is kept as .*1\\.$"_s));
        QVERIFY(store.store(Secret::SubtitlePassword, u"word"_s));
        QCOMPARE(contentOf(asidePath()), content);
        QCOMPARE(store.lookUp(Secret::SubtitlePassword).value(), u"word"_s);
    }

    void fileThatCannotBeOpenedIsNotCalledDamaged()
    {
        QVERIFY(QDir().mkpath(filePath()));
        FileSecretStore store(filePath());
        Caught<std::optional<QString>> read;
        store.read(Secret::SubtitleKey, read.completion());
        QVERIFY(!read.error().detail.contains(u"damaged"_s));
        QVERIFY(read.error().detail.contains(u"directory"_s));
    }

    /// The keyring, which has no such key, is not the reason.
    void unreadableFileIsToldBesideAKeyring()
    {
        m_sandbox.writeFile(u"config/secrets"_s, "{\"cut");
        KeychainSecretStore store({}, FileSecretStore(filePath()));
        Caught<std::optional<QString>> read;
        store.read(Secret::SubtitleKey, read.completion());
        QCOMPARE(read.error().localizedDescription, u"The keys in “%1” cannot be read."_s.arg(filePath()));
    }

    /// The desktop has asked the person for it, and a machine without one has nothing to complain of.
    void keyringThatDoesNotOpenLeavesNoSentence()
    {
        KeychainSecretStore store({}, FileSecretStore(filePath()));
        std::optional<base::Error> failure;
        QCOMPARE(loaded(store, &failure), Credentials());
        QVERIFY(!failure);
    }

    /// A file that only a repair can open again is not lost either.
    void fileThatCannotBeOpenedIsKeptAside()
    {
        QVERIFY(QDir().mkpath(filePath() + u"/inner"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was damaged and is kept as "_s));
        QVERIFY(FileSecretStore(filePath()).store(Secret::SubtitleKey, u"key"_s));
        QVERIFY(QFileInfo(asidePath() + u"/inner"_s).isDir());
        QCOMPARE(FileSecretStore(filePath()).lookUp(Secret::SubtitleKey).value(), u"key"_s);
    }

    void emptyFileHoldsNoSecrets()
    {
        m_sandbox.writeFile(u"config/secrets"_s, {});
        const FileSecretStore store(filePath());
        QVERIFY(!store.lookUp(Secret::SubtitleKey).value());
        QVERIFY(store.store(Secret::SubtitleKey, u"key"_s));
        QVERIFY(!QFileInfo::exists(asidePath()));
    }

    void fileThatOthersCouldReadIsNotMade()
    {
        FaultyCalls calls;
        calls.failingName = u"setMode"_s;
        calls.failure = EPERM;
        setCallsOfWriteFile(&calls);
        const Result<void> stored = FileSecretStore(filePath()).store(Secret::SubtitleKey, u"key"_s);
        setCallsOfWriteFile(nullptr);
        QVERIFY(!stored);
        QCOMPARE(stored.error().code, 1);
        QCOMPARE(QDir(m_sandbox.path(u"config"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());
        QVERIFY(!calls.made.contains(u"write"_s));
    }

    void fullDiskKeepsTheOldSecrets_data() { FullDisk::addRows(); }
    void fullDiskKeepsTheOldSecrets()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        const FileSecretStore store(disk.path(u"secrets"_s));
        QVERIFY(store.store(Secret::SubtitleKey, u"key"_s));
        disk.fill();
        const Result<void> stored = store.store(Secret::SubtitlePassword, u"word"_s);
        QVERIFY(!stored);
        QVERIFY(stored.error().localizedDescription.endsWith(u"There is not enough free space."_s));
        QCOMPARE(disk.files(), QStringList{u"secrets"_s});
        QCOMPARE(store.lookUp(Secret::SubtitleKey).value(), u"key"_s);
        disk.makeRoom();
        QVERIFY(store.store(Secret::SubtitlePassword, u"word"_s));
        QCOMPARE(store.lookUp(Secret::SubtitleKey).value(), u"key"_s);
        QCOMPARE(store.lookUp(Secret::SubtitlePassword).value(), u"word"_s);
    }

    void withoutAKeyringThePersonIsAsked_data()
    {
        QTest::addColumn<bool>("agreed");
        QTest::newRow("yes") << true;
        QTest::newRow("no") << false;
    }
    void withoutAKeyringThePersonIsAsked()
    {
        QFETCH(const bool, agreed);
        int asked = 0;
        KeychainSecretStore store(
            [&](const QString &reason, const std::function<void(bool)> &answer) {
                ++asked;
                QVERIFY(!reason.contains(u"my-key"_s));
                QVERIFY(!QFileInfo::exists(filePath()));
                answer(agreed);
            },
            FileSecretStore(filePath()));
        Caught<void> written;
        store.write(Secret::SubtitleKey, u"my-key"_s, written.completion());
        QVERIFY(!written.came());
        QTRY_VERIFY_WITH_TIMEOUT(written.came(), WaitLimit);
        QCOMPARE(asked, 1);
        QCOMPARE(written->hasValue(), agreed);
        QCOMPARE(QFileInfo::exists(filePath()), agreed);
        Caught<std::optional<QString>> read;
        store.read(Secret::SubtitleKey, read.completion());
        QTRY_VERIFY_WITH_TIMEOUT(read.came(), WaitLimit);
        if (agreed)
            QCOMPARE(read->value(), u"my-key"_s);
        else
            QVERIFY(!*read);
    }

    void absentKeyringIsLeftAlone()
    {
        int asked = 0;
        KeychainSecretStore store(
            [&](const QString &, const std::function<void(bool)> &answer) {
                ++asked;
                answer(true);
            },
            FileSecretStore(filePath()), KeychainSecretStore::Keyring::Absent);
        Caught<void> written;
        store.write(Secret::SubtitleKey, u"my-key"_s, written.completion());
        QCOMPARE(asked, 0); // never before the call has returned
        QVERIFY(*written);
        QCOMPARE(asked, 1);
        Caught<std::optional<QString>> read;
        store.read(Secret::SubtitleKey, read.completion());
        QVERIFY(!read.came());
        QCOMPARE(read->value(), u"my-key"_s);
    }

    void removingAsksNoKeyring()
    {
        const FileSecretStore file(filePath());
        QVERIFY(file.store(Secret::SubtitleKey, u"old"_s));
        KeychainSecretStore store([](const QString &, const std::function<void(bool)> &) { QFAIL("asked"); },
                                  file);
        Caught<void> written;
        store.write(Secret::SubtitleKey, {}, written.completion());
        QVERIFY(*written); // where there is no keyring, none has it
        QVERIFY(!file.lookUp(Secret::SubtitleKey).value());
    }

    void withoutAQuestionNothingIsKept()
    {
        KeychainSecretStore store({}, FileSecretStore(filePath()));
        Caught<void> written;
        store.write(Secret::SubtitleKey, u"my-key"_s, written.completion());
        QVERIFY(!*written);
        QVERIFY(!QFileInfo::exists(filePath()));
    }

private:
    QString filePath() const { return m_sandbox.path(u"config/secrets"_s); }
    QString asidePath() const { return filePath() + u".damaged-1"_s; }
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(nothing)");
    }

    Sandbox m_sandbox;
};

PLOVENDIX_TEST(SecretStoresTest)
#include "SecretStoresTest.moc"
