#include <base/WorkerThread.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <semaphore>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto WaitLimit = std::chrono::seconds(30);

/// Something that runs `action` when the last copy of it goes.
std::shared_ptr<void> whenGone(std::function<void()> action)
{
    return std::shared_ptr<void>(nullptr, [action = std::move(action)](void *) { action(); });
}

#ifdef Q_OS_LINUX
QSet<QString> threads()
{
    const QStringList names = QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return {names.cbegin(), names.cend()};
}
#endif
} // namespace

class WorkerThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jobsRunInTheirOrderOnAnotherThread()
    {
        std::vector<int> order;
        std::thread::id ranOn;
        std::promise<void> finished;
        WorkerThread worker;
        for (int i = 0; i < 1000; ++i)
            worker.post([&order, i] { order.push_back(i); });
        worker.post([&] {
            ranOn = std::this_thread::get_id();
            finished.set_value();
        });
        QCOMPARE(finished.get_future().wait_for(WaitLimit), std::future_status::ready);
        QVERIFY(ranOn != std::this_thread::get_id());
        QCOMPARE(order.size(), std::size_t(1000));
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

#ifdef Q_OS_LINUX
    void threadStartsWithTheFirstJob()
    {
        const QSet<QString> before = threads();
        WorkerThread worker;
        QCOMPARE(threads() - before, QSet<QString>());
        worker.post([] {});
        QCOMPARE((threads() - before).size(), 1);
        worker.post([] {});
        QCOMPARE((threads() - before).size(), 1);
    }
#endif

    void endWaitsForTheRunningJobAndForgetsTheRest()
    {
        std::binary_semaphore begun(0);
        std::binary_semaphore mayEnd(0);
        int ended = 0;
        auto worker = std::make_unique<WorkerThread>();
        worker->post([&] {
            begun.release();
            mayEnd.acquire();
            ++ended;
        });
        begun.acquire();
        // The first job goes on once the second has been forgotten, which happens at the end only.
        worker->post([&ended, held = whenGone([&] { mayEnd.release(); })] { ended += 100; });
        worker.reset();
        QCOMPARE(ended, 1);
    }

    void jobMayDestroyItsOwnThread()
    {
        std::promise<void> finished;
        const auto worker = std::make_shared<std::unique_ptr<WorkerThread>>(std::make_unique<WorkerThread>());
        (*worker)->post([&, worker] {
            worker->reset();
            finished.set_value();
        });
        QCOMPARE(finished.get_future().wait_for(WaitLimit), std::future_status::ready);
    }

    void forgottenJobMayPostAgainWhenItGoes()
    {
        WorkerThread other;
        std::promise<void> posted;
        std::binary_semaphore begun(0);
        std::binary_semaphore mayEnd(0);
        auto worker = std::make_unique<WorkerThread>();
        worker->post([&] {
            begun.release();
            mayEnd.acquire();
        });
        begun.acquire();
        WorkerThread *ending = worker.get();
        worker->post([held = whenGone([&, ending] {
                          ending->post([] {}); // comes too late and is dropped
                          other.post([&posted] { posted.set_value(); });
                          mayEnd.release();
                      })] {});
        worker.reset();
        QCOMPARE(posted.get_future().wait_for(WaitLimit), std::future_status::ready);
    }
};

PLOVENDIX_TEST(WorkerThreadTest)
#include "WorkerThreadTest.moc"
