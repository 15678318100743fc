#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RestSessionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void downloadLogsInOnce()
    {
        m_fixture->useAccount();
        for (const qint64 id : {1, 2}) {
            m_fixture->download(m_fixture->subtitle(id))->value();
        }
        QCOMPARE(logins(), 1);
        QCOMPARE(m_fixture->service->quota().remaining, 18);
        QVERIFY(
            !m_fixture->standIn.requests("/api/v1/download").constFirst().header("Authorization").isEmpty());
    }

    void searchNeedsNoLogin()
    {
        m_fixture->useAccount();
        m_fixture->search()->value();
        QCOMPARE(logins(), 0);
    }

    void twoDownloadsWaitForOneLogin()
    {
        m_fixture->useAccount();
        const auto first = m_fixture->download(m_fixture->subtitle(1));
        const auto second = m_fixture->download(m_fixture->subtitle(2));
        QTRY_VERIFY_WITH_TIMEOUT(first->came() && second->came(), WaitLimit);
        QVERIFY(**first && **second);
        QCOMPARE(logins(), 1);
    }

    void wrongPasswordIsSentOnce()
    {
        m_fixture->useAccount(SubtitleStandIn::UserName, u"wrong-word"_s);
        for (int i = 0; i < 3; ++i) {
            const auto caught = m_fixture->download(m_fixture->subtitle());
            QCOMPARE(kindOf(*caught), ServiceFailure::LoginRefused);
            QVERIFY(!caught->error().detail.contains(u"wrong-word"_s));
        }
        QCOMPARE(logins(), 1);
        // A corrected one is.
        m_fixture->useAccount();
        const auto caught = m_fixture->download(m_fixture->subtitle());
        caught->value();
        QCOMPARE(logins(), 2);
    }

    void mailAddressIsExplained()
    {
        m_fixture->useAccount(u"me@example.org"_s);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QCOMPARE(kindOf(*caught), ServiceFailure::LoginRefused);
        QVERIFY(caught->error().localizedDescription.contains(u"not the e-mail"_s));
        QCOMPARE(logins(), 1);
    }

    void loginsAreASecondApart()
    {
        m_fixture->useAccount(u"one"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        const Clock::Duration start = m_fixture->clock.now();
        m_fixture->useAccount(u"two"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        QVERIFY(m_fixture->clock.now() - start >= 1s);
    }

    void forgottenTokensAreRenewedOnce_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"token-gone", "token-gone-406", "token-gone-500"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void forgottenTokensAreRenewedOnce()
    {
        QFETCH(const QString, behaviour);
        m_fixture->useAccount();
        m_fixture->standIn.select(behaviour);
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(logins(), 2);
    }

    void searchGoesOnWithoutTheLoginThatFails_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"down@login", "html@login", "close-before@login"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void searchGoesOnWithoutTheLoginThatFails()
    {
        QFETCH(const QString, behaviour);
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
        m_fixture->standIn.select({u"token-gone"_s, behaviour});
        m_fixture->search()->value();
        QCOMPARE(logins(), 2);
        QVERIFY(
            m_fixture->standIn.requests("/api/v1/subtitles").constLast().header("Authorization").isEmpty());
    }

    void lateRefusalOfAnOldTokenLeavesTheNewOneAlone()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle(1))->value();
        // The refusal of this one takes its time, while another one meets the same and logs in.
        m_fixture->standIn.select({u"token-gone"_s, u"drip@search"_s});
        const auto slow = m_fixture->search();
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.requests("/api/v1/subtitles").size(), 1, WaitLimit);
        const auto quick = m_fixture->download(m_fixture->subtitle(2));
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->comesInTime(*quick), WaitLimit);
        m_fixture->standIn.clearBehaviours();
        m_fixture->standIn.setDripInterval(0);
        QTRY_VERIFY_WITH_TIMEOUT(slow->came() && quick->came(), WaitLimit);
        QVERIFY2(**slow, **slow ? "" : qPrintable(slow->error().detail));
        QCOMPARE(logins(), 2);
    }

    void shortTokensAreRenewedBeforeTheyEnd()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"short-token"_s);
        for (const auto &[id, pause, expected] : {std::tuple(1, 0s, 1), {2, 30s, 1}, {3, 60s, 2}}) {
            m_fixture->clock.advance(pause);
            m_fixture->download(m_fixture->subtitle(id))->value();
            QCOMPARE(logins(), expected);
        }
    }

    void tokenThatIsNeverAcceptedEndsTheTrying()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"token-refused"_s);
        QCOMPARE(kindOf(*m_fixture->download(m_fixture->subtitle())), ServiceFailure::LoginRefused);
        QCOMPARE(logins(), 2);
    }

    void logOutTellsTheService()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
        bool done = false;
        m_fixture->service->shutDown([&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitLimit);
        const QList<ReceivedRequest> requests = m_fixture->standIn.requests("/api/v1/logout");
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.constFirst().method, "DELETE");
    }

    void logOutWithoutALoginSendsNothing()
    {
        bool done = false;
        m_fixture->service->shutDown([&] { done = true; });
        QVERIFY(done);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void logOutWaitsNotLong()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
        m_fixture->standIn.select(u"silent@logout"_s);
        m_fixture->clock.setLongestAutomaticWait(1s);
        bool done = false;
        m_fixture->service->shutDown([&] { done = true; });
        m_fixture->clock.advance(0s); // its turn has come; the goodbye's limit is being waited for
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.requests("/api/v1/logout").size(), 1, WaitLimit);
        m_fixture->clock.advance(3s);
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitLimit);
    }

    void logOutDoesNotWaitForItsPlaceInTheRate()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
        m_fixture->clock.setLongestAutomaticWait(0ms);
        m_fixture->standIn.select(u"too-fast-date"_s);
        const auto search = m_fixture->search();
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending(), QList<Clock::Duration>{10s}, WaitLimit);
        int done = 0;
        m_fixture->service->shutDown([&] { ++done; });
        m_fixture->clock.advance(2s);
        QCOMPARE(done, 0);
        m_fixture->clock.advance(1s);
        QCOMPARE(done, 1);
    }

    void changedAccountDuringALoginIsForWhatFollows()
    {
        m_fixture->useAccount(u"old"_s, u"old-word"_s);
        m_fixture->standIn.select(u"silent@login"_s);
        const auto before = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(logins(), 1, WaitLimit);
        m_fixture->standIn.clearBehaviours();
        m_fixture->useAccount();
        const auto after = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->comesInTime(*after), WaitLimit);
        QVERIFY2(**after, **after ? "" : qPrintable(after->error().detail));
        // The first one waits for the login it began with, as long as anybody waits for an answer.
        QVERIFY(!before->came());
        m_fixture->clock.advance(20s);
        QCOMPARE(kindOf(*before), ServiceFailure::Timeout);
        QCOMPARE(logins(), 2);
    }

    void loginsOfBadShapeAreErrors_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, ServiceFailure kind) {
            QTest::newRow(name) << QString::fromLatin1(name) << static_cast<int>(kind);
        };
        row("html@login", ServiceFailure::BadAnswer);
        row("null@login", ServiceFailure::BadAnswer);
        row("empty@login", ServiceFailure::BadAnswer);
        row("down@login", ServiceFailure::Unavailable);
        row("close-before@login", ServiceFailure::Unavailable);
        row("unknown-key", ServiceFailure::KeyRefused);
    }
    void loginsOfBadShapeAreErrors()
    {
        QFETCH(const QString, behaviour);
        m_fixture->useAccount();
        m_fixture->standIn.select(behaviour);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QTEST(static_cast<int>(kindOf(*caught)), "kind");
        QCOMPARE(logins(), 1);
    }

    void connectionTestSaysWhatIsLeft()
    {
        m_fixture->useAccount();
        Caught<RestReport> report;
        m_fixture->service->testConnection(report.completion());
        QTRY_VERIFY_WITH_TIMEOUT(report.came(), WaitLimit);
        QVERIFY(*report);
        QVERIFY((*report)->isLoggedIn);
        QCOMPARE((*report)->quota.allowed, 20);
        QCOMPARE((*report)->quota.remaining, 20);
    }

    void connectionTestWithoutAKeySendsNothing()
    {
        m_fixture->settings.apiKey.clear();
        m_fixture->restart();
        Caught<RestReport> report;
        m_fixture->service->testConnection(report.completion());
        QVERIFY(!report.came());
        QTRY_VERIFY_WITH_TIMEOUT(report.came(), WaitLimit);
        QCOMPARE(kindOf(report), ServiceFailure::KeyRefused);
        QVERIFY(report->error().localizedDescription.contains(u"wants an API key"_s));
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void connectionTestWithoutAnAccountTestsTheKey()
    {
        Caught<RestReport> good;
        m_fixture->service->testConnection(good.completion());
        QTRY_VERIFY_WITH_TIMEOUT(good.came(), WaitLimit);
        QVERIFY(*good);
        QVERIFY(!(*good)->isLoggedIn);
        m_fixture->standIn.select(u"unknown-key"_s);
        Caught<RestReport> bad;
        m_fixture->service->testConnection(bad.completion());
        QTRY_VERIFY_WITH_TIMEOUT(bad.came(), WaitLimit);
        QCOMPARE(kindOf(bad), ServiceFailure::KeyRefused);
    }

    void secretsAreInNoLog()
    {
        static QString lines;
        lines.clear();
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &line) { lines += line + u'\n'; });
        m_fixture->useAccount();
        m_fixture->standIn.select({u"token-gone"_s, u"down-once"_s});
        const auto search = m_fixture->search();
        const auto download = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(search->came() && download->came(), WaitLimit);
        qInstallMessageHandler(before);
        QVERIFY(!lines.isEmpty());
        for (const QString &secret :
             {SubtitleStandIn::ApiKey, SubtitleStandIn::Password, u"eyJ"_s, u".sig1"_s})
            QVERIFY2(!lines.contains(secret), qPrintable(lines));
    }

private:
    int logins() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/login").size()); }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestSessionTest)
#include "RestSessionTest.moc"
