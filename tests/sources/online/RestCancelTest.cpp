#include "RestFixture.h"

#include <tests/support/TestMain.h>

#include <QFile>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Downloads that are cancelled at each of their steps: what still comes, and what it costs.
class RestCancelTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void cancelledDownloadIsNotAnsweredAndNotOrdered()
    {
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        m_fixture->service->cancelDownloads();
        m_fixture->download(m_fixture->subtitle(9200002))->value();
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
    }

    void answerOnItsWayIsDroppedByACancel()
    {
        m_fixture->settings.apiKey.clear(); // answered by a block on the main queue
        m_fixture->restart();
        const auto refused = m_fixture->download(m_fixture->subtitle());
        m_fixture->service->cancelDownloads();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!refused->came());
        QCOMPARE(kindOf(*m_fixture->download(m_fixture->subtitle())), ServiceFailure::KeyRefused);
    }

    void cancelWhileALoginStallsOrdersNothing()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"drip@login"_s);
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(logins(), 1, WaitLimit);
        m_fixture->service->cancelDownloads();
        const auto next = m_fixture->download(m_fixture->subtitle(9200002));
        QTRY_VERIFY_WITH_TIMEOUT((dripOn(), next->came()), WaitLimit);
        QVERIFY(**next);
        QVERIFY(!cancelled->came());
        QCOMPARE(logins(), 1);
        QCOMPARE(orders(), 1); // the next one's
    }

    void cancelDuringAPauseOrdersNothing()
    {
        const auto kept = m_fixture->download(m_fixture->subtitle(9200002));
        kept->value();
        bool isPausing = false;
        m_fixture->service->setPauseObserver([&](const auto &length) { isPausing = length.has_value(); });
        m_fixture->standIn.select(u"too-fast-date"_s);
        const auto search = m_fixture->search();
        QTRY_VERIFY_WITH_TIMEOUT(isPausing, WaitLimit);
        m_fixture->standIn.clearBehaviours();
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        // This one is looked up on the disk after the cancelled one, which then waits for the pause to end.
        m_fixture->download(m_fixture->subtitle(9200002))->value();
        m_fixture->service->cancelDownloads();
        m_fixture->clock.advance(15s);
        search->value();
        const auto next = m_fixture->download(m_fixture->subtitle(9200003));
        next->value();
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 2); // the kept one's and the next one's
        m_fixture->service->setPauseObserver({});
    }

    void cancelDuringTheOrderKeepsItsLink()
    {
        m_fixture->standIn.select(u"drip@download"_s);
        int toldOfQuota = 0;
        m_fixture->service->setQuotaObserver([&](const RestQuota &) { ++toldOfQuota; });
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, WaitLimit);
        m_fixture->service->cancelDownloads();
        QTRY_VERIFY_WITH_TIMEOUT((dripOn(), toldOfQuota > 0), WaitLimit);
        QCOMPARE(m_fixture->standIn.links().requests().size(), 0);
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
        m_fixture->service->setQuotaObserver({});
    }

    void choosingAgainDuringACancelledOrderJoinsIt()
    {
        m_fixture->standIn.select(u"drip@download"_s);
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, WaitLimit);
        m_fixture->service->cancelDownloads();
        const auto again = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT((dripOn(), again->came()), WaitLimit);
        QVERIFY(**again);
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
    }

    void cancelDuringTheTransferEndsItAndKeepsItsLink()
    {
        m_fixture->standIn.select(u"stall@link"_s);
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.links().requests().size(), 1, WaitLimit);
        m_fixture->service->cancelDownloads();
        m_fixture->standIn.clearBehaviours();
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
    }

private:
    static QByteArray contentOf(const Caught<QUrl> &caught)
    {
        QFile file((*caught).value().toLocalFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Part of every dripping answer.
    void dripOn() const
    {
        for (int bytes = 0; bytes < 200; ++bytes)
            m_fixture->standIn.drip();
    }
    int logins() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/login").size()); }
    int orders() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/download").size()); }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestCancelTest)
#include "RestCancelTest.moc"
