#include "PrivateBus.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/system/ApplicationLink.h>
#include <ui/system/WindowSystem.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const auto Identifier = u"com.quorvane.Plovendix"_s;
constexpr int ShortTimeout = 300;  // milliseconds
constexpr int FarTooLong = 15'000; // also for a second start on a busy machine
constexpr auto SecondStart = "--second-start";
const QStringList SecondStartArguments{u"ApplicationLinkTest"_s, QLatin1String(SecondStart)};

/// What a second start of the program does: an exit status for each outcome.
int startAsSecond(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ApplicationLink link(Identifier);
    link.setTimeout(std::chrono::milliseconds(ShortTimeout));
    return static_cast<int>(link.start(QCoreApplication::arguments().mid(2), u"token"_s));
}
} // namespace

class ApplicationLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_link = std::make_unique<ApplicationLink>(Identifier); }
    void cleanup()
    {
        m_link.reset();
        QDBusConnection::sessionBus().unregisterObject(u"/com/quorvane/Plovendix"_s);
        QDBusConnection::sessionBus().interface()->unregisterService(Identifier);
    }

    void firstOneOwnsTheNameUntilItIsDestroyed()
    {
        QCOMPARE(m_link->start({u"file:///a"_s}, {}), ApplicationLink::Outcome::First);
        QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(Identifier).value());
        m_link.reset();
        QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(Identifier).value());
        m_link = std::make_unique<ApplicationLink>(Identifier);
        QCOMPARE(m_link->start({}, {}), ApplicationLink::Outcome::First);
    }

    void othersReachIt_data()
    {
        QTest::addColumn<QStringList>("call");
        QTest::addColumn<QString>("heard"); // with the activation token
        const auto row = [](const char *name, const QStringList &call, const QString &heard) {
            QTest::newRow(name) << call << heard;
        };
        const auto files = u"['file:///a', 'plovendix:?x=%201']"_s;
        row("Activate", {u"Activate"_s, u"{}"_s}, u"activated, "_s);
        row("Open", {u"Open"_s, files, u"{}"_s}, u"opened file:///a plovendix:?x=%201, "_s);
        row("Open nothing", {u"Open"_s, u"@as []"_s, u"{}"_s}, u"opened , "_s);
        row("ActivateAction", {u"ActivateAction"_s, u"quit"_s, u"[<1>]"_s, u"{}"_s}, u"action quit, "_s);
        row("newer token", {u"Activate"_s, u"{'desktop-startup-id': <'old'>, 'activation-token': <'new'>}"_s},
            u"activated, new"_s);
        row("older token", {u"Activate"_s, u"{'desktop-startup-id': <'old'>}"_s}, u"activated, old"_s);
        row("empty newer token",
            {u"Activate"_s, u"{'activation-token': <''>, 'desktop-startup-id': <'old'>}"_s},
            u"activated, old"_s);
        row("platform data of any kind", {u"Activate"_s, u"{'activation-token': <5>, 'x': <[1,2]>}"_s},
            u"activated, "_s);
    }
    void othersReachIt()
    {
        QFETCH(QStringList, call);
        QFETCH(QString, heard);
        WindowSystem::setActivationToken(u"of an earlier caller"_s);
        QCOMPARE(m_link->start({}, {}), ApplicationLink::Outcome::First);
        listen();
        QProcess caller;
        callWith(caller, call);
        QTRY_COMPARE(m_heard, QStringList{heard});
        QTRY_COMPARE(caller.state(), QProcess::NotRunning);
        QCOMPARE(caller.exitCode(), 0);
    }

    void callerIsAnsweredBeforeItsRequestIsServed()
    {
        QCOMPARE(m_link->start({}, {}), ApplicationLink::Outcome::First);
        QProcess caller;
        bool answered = false;
        // An alert in a receiver would take as long; the caller must not wait for it.
        connect(m_link.get(), &ApplicationLink::activated, this,
                [&] { answered = caller.state() == QProcess::NotRunning || caller.waitForFinished(); });
        callWith(caller, {u"Activate"_s, u"{}"_s});
        QTRY_VERIFY(answered);
        QCOMPARE(caller.exitCode(), 0);
    }

    void secondOneHandsOver_data()
    {
        QTest::addColumn<QStringList>("uris");
        QTest::addColumn<QString>("heard");
        QTest::newRow("nothing") << QStringList() << u"activated, token"_s;
        QTest::newRow("files") << QStringList{u"file:///a"_s, u"file:///caf%E9"_s}
                               << u"opened file:///a file:///caf%E9, token"_s;
    }
    void secondOneHandsOver()
    {
        QFETCH(QStringList, uris);
        QFETCH(QString, heard);
        QCOMPARE(m_link->start({}, {}), ApplicationLink::Outcome::First);
        listen();
        QProcess second;
        second.start(QCoreApplication::applicationFilePath(), SecondStartArguments + uris);
        QTRY_COMPARE(m_heard, QStringList{heard});
        QTRY_COMPARE(second.state(), QProcess::NotRunning);
        QCOMPARE(second.exitCode(), static_cast<int>(ApplicationLink::Outcome::HandedOver));
    }

    void firstOneThatDoesNotAnswerLeavesTheSecondAlone()
    {
        QCOMPARE(m_link->start({}, {}), ApplicationLink::Outcome::First);
        QProcess second;
        second.start(QCoreApplication::applicationFilePath(),
                     SecondStartArguments + QStringList{u"file:///a"_s});
        QVERIFY(second.waitForFinished(FarTooLong)); // nothing is answered meanwhile
        QCOMPARE(second.exitCode(), static_cast<int>(ApplicationLink::Outcome::Alone));
    }

    void anotherKindOfOwnerLeavesItAlone()
    {
        const auto other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
        QVERIFY(QDBusConnection(other).registerService(Identifier));
        m_link->setTimeout(std::chrono::milliseconds(ShortTimeout));
        const auto outcome = m_link->start({}, {});
        QDBusConnection::disconnectFromBus(u"other"_s);
        QCOMPARE(outcome, ApplicationLink::Outcome::Alone);
    }

    void withoutABusItIsAlone()
    {
        const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_RUNTIME_DIR", m_sandbox.path(u"empty"_s).toUtf8());
        const auto outcome = m_link->start({}, {});
        QProcess second; // its environment says that there is a bus where there is none
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + m_sandbox.path(u"no-bus"_s).toUtf8());
        second.start(QCoreApplication::applicationFilePath(), SecondStartArguments);
        const bool finished = second.waitForFinished();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        qputenv("XDG_RUNTIME_DIR", runtime);
        QCOMPARE(outcome, ApplicationLink::Outcome::Alone);
        QVERIFY(finished);
        QCOMPARE(second.exitCode(), static_cast<int>(ApplicationLink::Outcome::Alone));
    }

    void tokenOfTheStartIsTheNewerKindFirst()
    {
        qunsetenv("XDG_ACTIVATION_TOKEN");
        qunsetenv("DESKTOP_STARTUP_ID");
        QCOMPARE(WindowSystem::activationTokenOfStart(), QString());
        qputenv("DESKTOP_STARTUP_ID", "a_TIME5");
        QCOMPARE(WindowSystem::activationTokenOfStart(), u"a_TIME5"_s);
        qputenv("XDG_ACTIVATION_TOKEN", "b");
        QCOMPARE(WindowSystem::activationTokenOfStart(), u"b"_s);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        qunsetenv("DESKTOP_STARTUP_ID");
    }

private:
    void listen()
    {
        m_heard.clear();
        const auto note = [this](const QString &signal) {
            m_heard += signal + u", "_s + WindowSystem::takeActivationToken();
        };
        connect(m_link.get(), &ApplicationLink::activated, this, [=] { note(u"activated"_s); });
        connect(m_link.get(), &ApplicationLink::opened, this,
                [=](const QStringList &uris) { note(u"opened "_s + uris.join(u' ')); });
        connect(m_link.get(), &ApplicationLink::actionActivated, this,
                [=](const QString &name) { note(u"action "_s + name); });
    }

    static void callWith(QProcess &caller, const QStringList &call)
    {
        caller.start(u"gdbus"_s, QStringList{u"call"_s, u"--session"_s, u"--dest"_s, Identifier,
                                             u"--object-path"_s, u"/com/quorvane/Plovendix"_s, u"--method"_s,
                                             u"org.freedesktop.Application."_s + call.first()} +
                                     call.mid(1));
    }

    Sandbox m_sandbox;
    std::unique_ptr<ApplicationLink> m_link;
    QStringList m_heard;
};

static int runApplicationLinkTest(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], SecondStart) == 0)
        return startAsSecond(argc, argv);
    const PrivateBus bus; // before the application object, which finds the bus by the environment
    const QCoreApplication application(argc, argv);
    ApplicationLinkTest test;
    return QTest::qExec(&test, argc, argv);
}
PLOVENDIX_TEST_FUNCTION(ApplicationLinkTest, runApplicationLinkTest)
#include "ApplicationLinkTest.moc"
