#include "UpdaterFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Checks that the person asks for.
class UpdaterTest final : public QObject
{
    Q_OBJECT

private:
    UpdaterFixture m;

    /// Checks until the window says something that contains `text`.
    void check(const QString &text)
    {
        m.updater->checkForUpdates(nullptr);
        QCOMPARE(m.shown(), u"Checking for updates…\n"_s);
        m.waitFor(text);
    }
    void beginHanging()
    {
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        m.waitForRequests(1);
    }

private Q_SLOTS:
    void initTestCase() { registerUpdateScene(); }
    void init()
    {
        m.prepare();
        m.defaults().setObject(u"SUEnableAutomaticChecks"_s, false);
        m.start();
    }
    void cleanup() { m.clear(); }

    void nothingNewerIsSaid()
    {
        QVERIFY(!m.window());
        m.offerVersions({u"1.5"_s, u"1.4"_s});
        check(u"Plovendix 1.5 is the newest version."_s);
        QCOMPARE(m.lastCheck(), m.clock->date());
        QCOMPARE(m.quietShows, QList<bool>{false});
    }

    void newerVersionIsOfferedAndOpened()
    {
        m.offerVersions({u"1.6"_s, u"1.10"_s});
        check(u"Plovendix 1.10 is available; you have 1.5."_s);
        QCOMPARE(m.child<QPlainTextEdit>("notesView")->toPlainText(), u"New in 1.10"_s);
        QCOMPARE(m.lastCheck(), m.clock->date());
        QVERIFY(m.workspace->opened.isEmpty());
        m.press("getButton");
        QCOMPARE(m.workspace->opened, QList<QUrl>{QUrl(u"https://get.example/1.10"_s)});
        QVERIFY(!m.window());
    }

    void unopenedLinkIsShown()
    {
        m.workspace->takesLinks = false;
        m.offerVersions({u"1.6"_s});
        check(u"1.6 is available"_s);
        m.press("getButton");
        QVERIFY(m.shown().contains(u"Nothing on this computer opens web pages."_s));
        QVERIFY(m.shown().endsWith(u"\nhttps://get.example/1.6"_s));
    }

    void failureIsReported()
    {
        m.answer = {200, {}, "<!DOCTYPE html><html>Sign in</html>"};
        check(u"The check for updates failed\nSomething else answered"_s);
        QVERIFY(!m.lastCheck().isValid());
    }

    void feedOlderThanTheLastIsRefused()
    {
        m.offerVersions({u"1.6"_s});
        check(u"1.6 is available"_s);
        m.feedDate = u"2030-02-28T12:00:00Z"_s;
        m.offerVersions({u"1.5"_s});
        check(u"The list of versions is older"_s);
        m.start(); // the settings keep the date
        check(u"The list of versions is older"_s);
        m.feedDate = u"2030-03-01T12:00:01Z"_s;
        m.offerVersions({u"1.7"_s});
        check(u"1.7 is available"_s);
    }

    void newDateOnAnOldFeedIsRefused()
    {
        m.answer.body.replace("2030-03-01", "2030-03-02");
        check(u"The list of versions is not signed"_s);
    }

    void unsignedVersionIsAFailure()
    {
        m.offerVersions({u"1.6"_s}, false);
        check(u"A new version is announced, but it is not signed"_s);
        QVERIFY(!m.lastCheck().isValid());
    }

    void askingTwiceIsOneCheck()
    {
        beginHanging();
        m.updater->checkForUpdates(nullptr);
        m.clock->advance(30s);
        m.waitFor(u"did not answer in time"_s);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void closingTheWindowEndsTheCheck()
    {
        beginHanging();
        m.window()->close();
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        m.clock->advance(120s);
        QVERIFY(!m.window());
        m.offerVersions({});
        check(u"newest version"_s);
    }

    void askingAgainReplacesAnOffer()
    {
        m.offerVersions({u"1.6"_s});
        check(u"1.6 is available"_s);
        m.offerVersions({});
        check(u"newest version"_s);
    }

    void skippedVersionIsOfferedOnRequest()
    {
        m.offerVersions({u"1.6"_s});
        check(u"1.6 is available"_s);
        m.press("skipButton");
        QVERIFY(!m.window());
        QCOMPARE(m.defaults().string(u"SUSkippedVersion"_s), u"1.6"_s);
        check(u"1.6 is available"_s);
    }

    void addressIsASettingWithAReservedHost()
    {
        m.defaults().setObject(u"UpdateFeedURL"_s, u"http://updates.example/f"_s);
        check(u"must begin with https"_s);
        m.defaults().removeObject(u"UpdateFeedURL"_s);
        QCOMPARE(m.defaults().string(u"UpdateFeedURL"_s),
                 u"https://updates.quorvane.example/plovendix/appcast.xml"_s);
    }

    void updaterMayGoDuringACheck()
    {
        beginHanging();
        m.updater.reset();
        QVERIFY(!m.window());
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
    }
};

PLOVENDIX_GUI_TEST(UpdaterTest)
#include "UpdaterTest.moc"
