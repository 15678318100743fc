#include "CatalogueClient.h"

#include <base/MainQueue.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <algorithm>
#include <atomic>
#include <random>

/// When and how often a query is answered.
class CatalogueQueryTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueHome m_home{m_sandbox};

private Q_SLOTS:
    void init() { m_home.reset(); }

    void completionComesAfterTheCallOnAnotherThread()
    {
        Answers answers;
        const auto catalogue = m_home.service();
        catalogue->query(textQuery(QStringLiteral("lights")), answers.completion());
        QCOMPARE(answers.count(), 0);
        QTRY_COMPARE(answers.count(), 1);
        QVERIFY(answers.lastThread() != std::this_thread::get_id());
    }

    void everyQueryIsAnsweredOnceInItsOrder()
    {
        constexpr int Queries = 200;
        const auto catalogue = m_home.service();
        std::mutex mutex;
        QList<int> order;
        for (int i = 0; i < Queries; ++i) {
            catalogue->query(textQuery(i % 2 == 0 ? QStringLiteral("lights") : QStringLiteral("nothing")),
                             [&, i](const Result<QueryResult> &) {
                                 const std::scoped_lock lock(mutex);
                                 order += i;
                             });
        }
        const auto answered = [&] {
            const std::scoped_lock lock(mutex);
            return order.size();
        };
        QTRY_COMPARE_WITH_TIMEOUT(answered(), qsizetype(Queries), 60000);
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void cancelledQueriesAreNeverAnswered()
    {
        Answers cancelled;
        Answers kept;
        const auto catalogue = m_home.service();
        for (int i = 0; i < 50; ++i)
            catalogue->query(textQuery(QStringLiteral("lights")), cancelled.completion());
        catalogue->cancelQueryTask();
        catalogue->query(textQuery(QStringLiteral("lights")), kept.completion());
        // The worker goes in order, so that the last query's answer comes after all it could have given
        // before.
        QTRY_COMPARE(kept.count(), 1);
        QCOMPARE(cancelled.count(), 0);
    }

    void cancelAtAnyMomentLetsNoAnswerThrough()
    {
        std::mt19937 random(11);
        const auto catalogue = m_home.service();
        for (int round = 0; round < 40; ++round) {
            std::atomic<bool> isCancelled = false;
            std::atomic<int> late = 0;
            std::atomic<int> given = 0;
            const int queries = 1 + int(random() % 5);
            for (int i = 0; i < queries; ++i) {
                catalogue->query(textQuery(QStringLiteral("lights")), [&](const Result<QueryResult> &) {
                    late += isCancelled ? 1 : 0;
                    ++given;
                });
            }
            const int awaited = int(random() % unsigned(queries + 1));
            QTRY_VERIFY(given >= awaited);
            catalogue->cancelQueryTask();
            isCancelled = true;
            Answers last;
            catalogue->query(textQuery(QStringLiteral("nothing")), last.completion());
            QTRY_COMPARE(last.count(), 1);
            QCOMPARE(late.load(), 0);
        }
    }

    void completionMayCancelAndAskAgain()
    {
        Answers second;
        Answers dropped;
        const auto catalogue = m_home.service();
        std::atomic<int> first = 0;
        catalogue->query(textQuery(QStringLiteral("lights")), [&](const Result<QueryResult> &) {
            ++first;
            catalogue->cancelQueryTask();
            catalogue->query(textQuery(QStringLiteral("lights")), second.completion());
        });
        catalogue->query(textQuery(QStringLiteral("lights")), dropped.completion());
        QTRY_COMPARE(second.count(), 1);
        QCOMPARE(first.load(), 1);
        QCOMPARE(dropped.count(), 0);
    }

    void completionMayHoldTheLastReference()
    {
        std::atomic<bool> isGone = false;
        auto catalogue = m_home.service();
        const std::weak_ptr<CatalogueService> weak = catalogue;
        CatalogueService &asked = *catalogue;
        asked.query(textQuery(QStringLiteral("lights")),
                    [&isGone, held = std::move(catalogue)](const auto &) mutable {
                        held.reset();
                        isGone = true;
                    });
        QTRY_VERIFY(isGone && weak.expired());
    }

    void queriesOfAServiceThatIsGoneAreNotAnswered()
    {
        Answers answers;
        m_home.service()->query(textQuery(QStringLiteral("lights")), answers.completion());
        MainQueue::shared().runUntilIdle();
        QCOMPARE(answers.count(), 0);
    }
};

PLOVENDIX_TEST(CatalogueQueryTest)
#include "CatalogueQueryTest.moc"
