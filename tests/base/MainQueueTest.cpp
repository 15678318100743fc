#include <base/FatalFault.h>
#include <base/MainQueue.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace std::chrono_literals;

class MainQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        m_queue.useSystemClock();
        m_queue.clear();
        m_order.clear();
    }

    void blocksRunInTheirOrderAfterTheCall()
    {
        for (int number = 1; number <= 5; ++number)
            m_queue.async([this, number] { m_order += number; });
        QVERIFY(m_order.isEmpty());
        QTRY_COMPARE(m_order, (QList<int>{1, 2, 3, 4, 5}));
    }

    void blockOfADestroyedContextIsDropped()
    {
        QObject lives;
        auto gone = std::make_unique<QObject>();
        m_queue.async(gone.get(), [this] { m_order += 1; });
        m_queue.async(&lives, [this] { m_order += 2; });
        gone.reset();
        m_queue.runUntilIdle();
        QCOMPARE(m_order, QList<int>{2});
    }

    void blockQueuedByABlockRunsAfterItAndAfterThoseBefore()
    {
        m_queue.async([this] {
            m_queue.async([this] { m_order += 3; });
            m_order += 1;
        });
        m_queue.async([this] { m_order += 2; });
        QTRY_COMPARE(m_order, (QList<int>{1, 2, 3}));
    }

    void blocksWaitForTheEndOfANestedEventLoop()
    {
        m_queue.async([this] {
            m_queue.async([this] { m_order += 2; });
            QEventLoop loop;
            // Its wake-up is spent in the nested loop, and must not be lost.
            QTimer::singleShot(0ms, &loop, [this] { m_queue.async([this] { m_order += 3; }); });
            QTimer::singleShot(60ms, &loop, &QEventLoop::quit);
            loop.exec();
            m_order += 1;
        });
        QTRY_COMPARE(m_order, (QList<int>{1, 2, 3}));
        m_queue.async([this] {
            m_queue.asyncAfter(1ms, [this] { m_order += 5; });
            QEventLoop loop;
            QTimer::singleShot(60ms, &loop, &QEventLoop::quit);
            loop.exec();
            m_order += 4;
        });
        QTRY_COMPARE(m_order, (QList<int>{1, 2, 3, 4, 5}));
    }

    void runUntilIdleInsideABlockRunsNothing()
    {
        m_queue.async([this] {
            m_queue.async([this] { m_order += 2; });
            m_queue.runUntilIdle();
            m_order += 1;
        });
        m_queue.runUntilIdle();
        QCOMPARE(m_order, (QList<int>{1, 2}));
    }

    void delayedBlocksRunOnceTheManualClockReachesThem()
    {
        m_queue.useManualClock();
        m_queue.asyncAfter(1ms, [this] { m_order += 0; });
        m_queue.useSystemClock();
        QTRY_COMPARE(m_order, QList<int>{0});
        m_order.clear();
        m_queue.useManualClock();
        m_queue.asyncAfter(10s, [this] { m_order += 2; });
        for (int number = 3; number <= 5; ++number)
            m_queue.asyncAfter(11s, [this, number] { m_order += number; });
        m_queue.asyncAfter(9s, [this] { m_order += 1; });
        m_queue.advance(9'999ms);
        m_queue.runUntilIdle();
        QCOMPARE(m_order, QList<int>{1});
        m_queue.advance(1ms);
        m_queue.runUntilIdle();
        QCOMPARE(m_order, (QList<int>{1, 2}));
        m_queue.advance(2s);
        m_queue.runUntilIdle();
        QCOMPARE(m_order, (QList<int>{1, 2, 3, 4, 5}));
    }

    void blockThatFellDueGoesBeforeOneQueuedLater()
    {
        m_queue.useManualClock();
        m_queue.asyncAfter(1s, [this] { m_order += 1; });
        m_queue.advance(1s);
        m_queue.async([this] { m_order += 2; });
        m_queue.runUntilIdle();
        QCOMPARE(m_order, (QList<int>{1, 2}));
    }

    void delayedBlockRunsByTheSystemClock()
    {
        m_queue.asyncAfter(1h, [this] { m_order += 1; });
        m_queue.asyncAfter(40ms, [this] { m_order += 2; });
        m_queue.async([this] { m_order += 3; });
        QTRY_COMPARE(m_order, (QList<int>{3, 2}));
    }

    void eventsGetTheirTurnBetweenBatches()
    {
        bool isTimerServed = false;
        int turns = 0;
        QTimer::singleShot(0ms, this, [&] { isTimerServed = true; });
        std::function<void()> requeue = [&] {
            ++turns;
            if (!isTimerServed)
                m_queue.async(requeue);
        };
        m_queue.async(requeue);
        QTRY_VERIFY(isTimerServed);
        QVERIFY(turns > 0);
        m_queue.runUntilIdle();
    }

    void blockThatThrowsLeavesTheQueueWorking()
    {
        const FatalFaultTrap trap;
        m_queue.async([] { fatalFault(QStringLiteral("no outlet")); });
        m_queue.async([this] { m_order += 1; });
        QVERIFY_EXCEPTION_THROWN(m_queue.runUntilIdle(), FatalFaultCaught);
        QVERIFY(m_order.isEmpty());
        QTRY_COMPARE(m_order, QList<int>{1});
        m_queue.async([this] { m_order += 2; });
        QTRY_COMPARE(m_order, (QList<int>{1, 2}));
    }

    void clearForgetsDueAndDelayedBlocks()
    {
        m_queue.useManualClock();
        m_queue.async([this] { m_order += 1; });
        m_queue.asyncAfter(1s, [this] { m_order += 2; });
        m_queue.clear();
        m_queue.advance(2s);
        m_queue.runUntilIdle();
        QVERIFY(m_order.isEmpty());
    }

    void clearedBlockMayQueueAnotherAsItGoes()
    {
        class QueuesAtItsEnd final
        {
        public:
            QueuesAtItsEnd(MainQueue &queue, QList<int> &order) : m_queue(queue), m_order(order) {}
            ~QueuesAtItsEnd()
            {
                m_queue.async([&order = m_order] { order += 7; });
            }
            QueuesAtItsEnd(const QueuesAtItsEnd &) = delete;
            QueuesAtItsEnd &operator=(const QueuesAtItsEnd &) = delete;

        private:
            MainQueue &m_queue;
            QList<int> &m_order;
        };
        m_queue.async([held = std::make_shared<QueuesAtItsEnd>(m_queue, m_order)] {});
        m_queue.clear();
        m_queue.runUntilIdle();
        QCOMPARE(m_order, QList<int>{7});
    }

    void blockIsDestroyedBeforeTheNextStarts()
    {
        auto held = std::make_shared<int>(0);
        const std::weak_ptr<int> watched = held;
        bool wasGone = false;
        m_queue.async([kept = std::move(held)] {});
        m_queue.async([&] { wasGone = watched.expired(); });
        m_queue.runUntilIdle();
        QVERIFY(wasGone);
    }

private:
    MainQueue &m_queue = MainQueue::shared();
    QList<int> m_order;
};

PLOVENDIX_TEST(MainQueueTest)
#include "MainQueueTest.moc"
