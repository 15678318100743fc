#include <base/MainQueue.h>
#include <tests/support/TestMain.h>

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace
{
constexpr int Workers = 8;
constexpr int BlocksEach = 250;

/// Runs `work(index)` on as many threads as there are workers; joins them all.
class Crew final
{
public:
    explicit Crew(const std::function<void(int)> &work)
    {
        for (int index = 0; index < Workers; ++index)
            m_threads.emplace_back(work, index);
    }
    ~Crew()
    {
        for (std::thread &thread : m_threads)
            thread.join();
    }
    Crew(const Crew &) = delete;
    Crew &operator=(const Crew &) = delete;

private:
    std::vector<std::thread> m_threads;
};
} // namespace

/// Many threads and one queue; worth most under the thread sanitizer.
class MainQueueThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        m_queue.useSystemClock();
        m_queue.clear();
    }

    void blocksOfEachThreadKeepTheirOrder()
    {
        std::vector<QList<int>> seen(Workers);
        int total = 0;
        {
            const Crew crew([&](int worker) {
                for (int number = 0; number < BlocksEach; ++number) {
                    m_queue.asyncAfter(0ms, [] {});
                    m_queue.async([&seen, &total, worker, number] {
                        seen[static_cast<std::size_t>(worker)] += number;
                        ++total;
                    });
                }
            });
            QTRY_COMPARE(total, Workers * BlocksEach);
        }
        for (const QList<int> &numbers : seen) {
            QCOMPARE(numbers.size(), BlocksEach);
            QVERIFY(std::is_sorted(numbers.begin(), numbers.end()));
        }
    }

    void whatABlockHoldsIsReleasedOnTheMainThread()
    {
        std::atomic<int> releasedElsewhere = 0;
        std::atomic<int> released = 0;
        const auto release = [&](const int *value) {
            delete value;
            if (!MainQueue::isMainThread())
                ++releasedElsewhere;
            ++released;
        };
        const Crew crew([&](int worker) {
            m_queue.async([held = std::shared_ptr<int>(new int(worker), release)] { *held += 1; });
        });
        QTRY_COMPARE(released.load(), Workers);
        QCOMPARE(releasedElsewhere.load(), 0);
    }

    void workersMayQueueWhileBlocksAreForgotten()
    {
        std::atomic<int> queued = 0;
        int ran = 0;
        {
            const Crew crew([&](int) {
                for (int number = 0; number < BlocksEach; ++number) {
                    m_queue.async([&ran] { ++ran; });
                    ++queued;
                }
            });
            while (queued.load() < Workers * BlocksEach)
                m_queue.clear();
        }
        m_queue.runUntilIdle();
        QVERIFY(ran <= Workers * BlocksEach);
        bool isAlive = false;
        m_queue.async([&] { isAlive = true; });
        QTRY_VERIFY(isAlive);
    }

    void mainThreadIsKnown()
    {
        QVERIFY(MainQueue::isMainThread());
        std::atomic<bool> elsewhere = true;
        std::thread([&] { elsewhere = MainQueue::isMainThread(); }).join();
        QVERIFY(!elsewhere.load());
    }

private:
    MainQueue &m_queue = MainQueue::shared();
};

PLOVENDIX_TEST(MainQueueThreadsTest)
#include "MainQueueThreadsTest.moc"
