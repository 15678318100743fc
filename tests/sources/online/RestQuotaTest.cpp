#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// How many downloads are left, and what costs one.
class RestQuotaTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void remainingDownloadsAreReported()
    {
        QList<int> told;
        m_fixture->service->setQuotaObserver(
            [&](const RestQuota &quota) { told += quota.remaining.value_or(-1); });
        for (const qint64 id : {1, 2, 2}) {
            m_fixture->download(m_fixture->subtitle(id))->value();
        }
        QCOMPARE(told, (QList<int>{4, 3}));
        QCOMPARE(m_fixture->service->quota().allowed, 5);
    }

    void limitIsSaidWithItsTime_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("at midnight") << QString() << u"(in 3 h 12 min)"_s;
        QTest::newRow("soon") << u"quota-reset-soon"_s << u"(in 2 min)"_s;
        QTest::newRow("in the past") << u"quota-reset-past"_s << u"Try again tomorrow."_s;
    }
    void limitIsSaidWithItsTime()
    {
        QFETCH(const QString, behaviour);
        QFETCH(const QString, sentence);
        if (!behaviour.isEmpty())
            m_fixture->standIn.select(behaviour);
        m_fixture->standIn.select(u"quota-used"_s);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QCOMPARE(kindOf(*caught), ServiceFailure::LimitReached);
        QVERIFY2(caught->error().localizedDescription.contains(sentence),
                 qPrintable(caught->error().localizedDescription));
    }

    void limitIsSaidWithWhatTheLoginAllows()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"quota-used"_s);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QVERIFY2(caught->error().localizedDescription.contains(u"all 20 downloads"_s),
                 qPrintable(caught->error().localizedDescription));
    }

    void usedUpIsNotAskedAgainBeforeTheReset()
    {
        for (int id = 1; id <= 5; ++id) {
            m_fixture->download(m_fixture->subtitle(id))->value();
        }
        const auto sixth = m_fixture->download(m_fixture->subtitle(6));
        QCOMPARE(kindOf(*sixth), ServiceFailure::LimitReached);
        QVERIFY(sixth->error().localizedDescription.contains(u"all 5 downloads"_s));
        QVERIFY(sixth->error().localizedDescription.contains(u"With an account"_s));
        QCOMPARE(orders(), 5);
        // What was fetched before is still to be had.
        m_fixture->download(m_fixture->subtitle(3))->value();
        // After the reset, and for another account, it is worth asking.
        m_fixture->clock.setDate(m_fixture->clock.date().addSecs(4 * 3600));
        m_fixture->download(m_fixture->subtitle(7))->error();
        QCOMPARE(orders(), 6);
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle(8))->value();
        QCOMPARE(m_fixture->service->quota().remaining, 19);
    }

    void timedOutOrderIsNotRepeated()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"silent@download"_s);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending().value(0), Clock::Duration(20s), WaitLimit);
        m_fixture->clock.advance(20s);
        QCOMPARE(kindOf(*caught), ServiceFailure::Timeout);
        QCOMPARE(orders(), 1);
        // What it cost is asked for instead.
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->service->quota().remaining, 19, WaitLimit);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/infos/user").size(), 1);
    }

    void timedOutOrderIsSaidAtOnceAndMadeAgainOnlyOnceItsCostIsKnown()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select({u"silent@download"_s, u"stall@user"_s});
        const auto first = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(orders(), 1, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending().value(0), Clock::Duration(20s), WaitLimit);
        m_fixture->clock.advance(20s);
        QCOMPARE(kindOf(*first), ServiceFailure::Timeout);
        // The question for the cost is not answered, either.
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.requests("/api/v1/infos/user").size(), 1, WaitLimit);
        const auto second = m_fixture->download(m_fixture->subtitle());
        m_fixture->standIn.clearBehaviours();
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending().value(0), Clock::Duration(20s), WaitLimit);
        QCOMPARE(orders(), 1);
        m_fixture->clock.advance(20s);
        second->value();
        QCOMPARE(m_fixture->standIn.requests("/api/v1/infos/user").size(), 2);
        QCOMPARE(orders(), 2);
    }

private:
    int orders() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/download").size()); }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestQuotaTest)
#include "RestQuotaTest.moc"
