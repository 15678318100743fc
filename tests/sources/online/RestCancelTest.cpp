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
        const auto next = m_fixture->download(m_fixture->subtitle(9200002));
        QTRY_VERIFY_WITH_TIMEOUT(next->came(), Patience);
        QVERIFY(**next);
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
    }

    void cancelDuringTheOrderKeepsItsLink()
    {
        m_fixture->standIn.select(u"drip@download"_s);
        int toldOfQuota = 0;
        m_fixture->service->setQuotaObserver([&](const RestQuota &) { ++toldOfQuota; });
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, Patience);
        m_fixture->service->cancelDownloads();
        QTRY_VERIFY_WITH_TIMEOUT((dripOn(), toldOfQuota > 0), Patience);
        QCOMPARE(m_fixture->standIn.links().requests().size(), 0);
        const auto again = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(again->came(), Patience);
        QCOMPARE(contentOf(*again), SubtitleLinks::content(9200001));
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
        m_fixture->service->setQuotaObserver({});
    }

    void choosingAgainDuringACancelledOrderJoinsIt()
    {
        m_fixture->standIn.select(u"drip@download"_s);
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, Patience);
        m_fixture->service->cancelDownloads();
        const auto again = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT((dripOn(), again->came()), Patience);
        QVERIFY(**again);
        QVERIFY(!cancelled->came());
        QCOMPARE(orders(), 1);
    }

    void cancelDuringTheTransferEndsItAndKeepsItsLink()
    {
        m_fixture->standIn.select(u"stall@link"_s);
        const auto cancelled = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.links().requests().size(), 1, Patience);
        m_fixture->service->cancelDownloads();
        m_fixture->standIn.clearBehaviours();
        const auto again = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(again->came(), Patience);
        QCOMPARE(contentOf(*again), SubtitleLinks::content(9200001));
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
    int orders() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/download").size()); }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestCancelTest)
#include "RestCancelTest.moc"
