#include <model/OutstandingQueries.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

class OutstandingQueriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queryIsAnsweredOnce()
    {
        OutstandingQueries queries;
        const quint64 query = queries.begin();
        int answers = 0;
        queries.finish(query, [&] { ++answers; });
        queries.finish(query, [&] { ++answers; });
        QCOMPARE(answers, 1);
        QVERIFY(!queries.isOutstanding(query));
    }

    void cancelDropsEveryQueryButNoLaterOne()
    {
        OutstandingQueries queries;
        const quint64 first = queries.begin();
        const quint64 second = queries.begin();
        queries.cancelAll();
        const quint64 third = queries.begin();
        int answers = 0;
        for (const quint64 query : {first, second, third})
            queries.finish(query, [&] { ++answers; });
        QCOMPARE(answers, 1);
    }

    void answerMayCancelAndAskAgain()
    {
        OutstandingQueries queries;
        const quint64 first = queries.begin();
        const quint64 second = queries.begin();
        quint64 third = 0;
        queries.finish(first, [&] {
            queries.cancelAll();
            third = queries.begin();
        });
        QVERIFY(!queries.isOutstanding(second));
        QVERIFY(queries.isOutstanding(third));
    }

    /// Many threads answer while this one cancels: what was cancelled stays silent, whatever the timing.
    void noAnswerBeginsAfterCancelReturned()
    {
        constexpr int Rounds = 300;
        for (int round = 0; round < Rounds; ++round) {
            OutstandingQueries queries;
            std::atomic<bool> isCancelled = false;
            std::atomic<int> lateAnswers = 0;
            std::vector<std::thread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&, query = queries.begin()] {
                    queries.finish(query, [&] { lateAnswers += isCancelled ? 1 : 0; });
                });
            }
            queries.cancelAll();
            isCancelled = true;
            for (std::thread &thread : threads)
                thread.join();
            QCOMPARE(lateAnswers.load(), 0);
        }
    }
};

PLOVENDIX_TEST(OutstandingQueriesTest)
#include "OutstandingQueriesTest.moc"
