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

    void check(qsizetype states = 2)
    {
        m.updater->checkForUpdates(nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states.size(), states, WaitLimit);
    }
    QString lastState() const { return m.window->states.constLast(); }

private Q_SLOTS:
    void init()
    {
        m.prepare();
        m.defaults().setObject(u"SUEnableAutomaticChecks"_s, false);
        m.start();
    }
    void cleanup() { m.clear(); }

    void thereIsNothingNewer()
    {
        m.offerVersions({u"1.5"_s, u"1.4"_s});
        check();
        QCOMPARE(m.window->states, (QStringList{u"checking"_s, u"newest 1.5"_s}));
        QCOMPARE(m.lastCheck(), m.clock->date());
    }

    void aNewerVersionIsOffered()
    {
        m.offerVersions({u"1.6"_s, u"1.10"_s});
        check();
        QCOMPARE(m.window->states, (QStringList{u"checking"_s, u"offer 1.10"_s}));
        QCOMPARE(m.window->offer.installedVersion, u"1.5"_s);
        QCOMPARE(m.window->offer.notes, u"New in 1.10"_s);
        QCOMPARE(m.window->offer.link, QUrl(u"https://get.example/1.10"_s));
        QCOMPARE(m.lastCheck(), m.clock->date());
        QVERIFY(m.workspace->opened.isEmpty());
    }

    void getOpensTheLink()
    {
        m.offerVersions({u"1.6"_s});
        check();
        m.window->person->getUpdate();
        QCOMPARE(m.workspace->opened, QList<QUrl>{QUrl(u"https://get.example/1.6"_s)});
        QCOMPARE(lastState(), u"dismissed"_s);
    }

    void unopenedLinkIsReported()
    {
        m.workspace->takesLinks = false;
        m.offerVersions({u"1.6"_s});
        check();
        m.window->person->getUpdate();
        QVERIFY(lastState().startsWith(u"failure "_s));
        QVERIFY(lastState().endsWith(u"\nhttps://get.example/1.6"_s));
    }

    void failuresAreReported()
    {
        m.answer = {200, {}, "<!DOCTYPE html><html>Sign in</html>"};
        check();
        QVERIFY(lastState().startsWith(u"failure Something else answered"_s));
        QVERIFY(!m.lastCheck().isValid());
    }

    void anOlderFeedThanOneThatWasSeenIsRefused()
    {
        m.offerVersions({u"1.6"_s});
        check();
        QCOMPARE(lastState(), u"offer 1.6"_s);
        m.feedDate = u"2030-02-28T12:00:00Z"_s;
        m.offerVersions({u"1.5"_s});
        check(4);
        QVERIFY2(lastState().startsWith(u"failure The list of versions is older"_s), qPrintable(lastState()));
        // The program remembers it, too.
        m.start();
        check(6);
        QVERIFY2(lastState().startsWith(u"failure The list of versions is older"_s), qPrintable(lastState()));
        m.feedDate = u"2030-03-01T12:00:01Z"_s;
        m.offerVersions({u"1.7"_s});
        check(8);
        QCOMPARE(lastState(), u"offer 1.7"_s);
    }

    void aNewDateOnAnOldFeedIsRefused()
    {
        m.answer.body.replace("2030-03-01", "2030-03-02");
        check();
        QVERIFY2(lastState().startsWith(u"failure The list of versions is not signed"_s),
                 qPrintable(lastState()));
    }

    void anUnsignedVersionIsAFailure()
    {
        m.offerVersions({u"1.6"_s}, false);
        check();
        QVERIFY(lastState().startsWith(u"failure A new version is announced, but it is not signed"_s));
        QVERIFY(!m.lastCheck().isValid());
        m.window->person->getUpdate();
        QVERIFY(m.workspace->opened.isEmpty());
    }

    void askingTwiceIsOneCheck()
    {
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->requests().size(), 1, WaitLimit);
        m.updater->checkForUpdates(nullptr);
        QCOMPARE(m.window->states, (QStringList{u"checking"_s, u"forward"_s}));
        m.clock->advance(30s);
        QTRY_VERIFY_WITH_TIMEOUT(lastState().startsWith(u"failure "_s), WaitLimit);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void closingTheWindowEndsTheCheck()
    {
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->requests().size(), 1, WaitLimit);
        m.window->close();
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        m.clock->advance(120s);
        QCOMPARE(m.window->states, QStringList{u"checking"_s});
        m.offerVersions({});
        check(3);
        QCOMPARE(lastState(), u"newest 1.5"_s);
    }

    void askingAgainReplacesAnOffer()
    {
        m.offerVersions({u"1.6"_s});
        check();
        m.offerVersions({});
        check(4);
        QCOMPARE(lastState(), u"newest 1.5"_s);
        m.window->person->getUpdate();
        QVERIFY(m.workspace->opened.isEmpty());
    }

    void aSkippedVersionIsOfferedToWhoAsks()
    {
        m.offerVersions({u"1.6"_s});
        check();
        m.window->person->skipVersion();
        QCOMPARE(lastState(), u"dismissed"_s);
        QCOMPARE(m.defaults().string(u"SUSkippedVersion"_s), u"1.6"_s);
        check(5);
        QCOMPARE(lastState(), u"offer 1.6"_s);
    }

    void withoutAnAddressInTheSettingsTheReservedOneHolds()
    {
        m.defaults().removeObject(u"UpdateFeedURL"_s);
        QCOMPARE(m.defaults().string(u"UpdateFeedURL"_s),
                 u"https://updates.quorvane.example/plovendix/appcast.xml"_s);
    }

    void anAddressInTheClearIsToldAtOnce()
    {
        m.defaults().setObject(u"UpdateFeedURL"_s, u"http://updates.example/f"_s);
        check();
        QVERIFY(lastState().contains(u"must begin with https"_s));
    }

    void theUpdaterMayGoDuringACheck()
    {
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->requests().size(), 1, WaitLimit);
        m.updater.reset();
        QVERIFY(!m.window->person);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
    }
};

PLOVENDIX_TEST(UpdaterTest)
#include "UpdaterTest.moc"
