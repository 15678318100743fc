#include "RestFixture.h"

#include <sources/online/RestQuery.h>
#include <sources/online/RestSearch.h>
#include <tests/support/TestMain.h>

#include <atomic>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// Keeps a worker busy from when its turn comes until it is let go.
class HeldWorker final
{
public:
    explicit HeldWorker(WorkerThread &worker)
    {
        worker.post([begun = m_begun, end = m_release.get_future().share()] {
            *begun = true;
            end.wait();
        });
    }
    ~HeldWorker() { release(); }
    Q_DISABLE_COPY_MOVE(HeldWorker)

    bool isHeld() const { return *m_begun && !m_isReleased; }
    void release()
    {
        if (!std::exchange(m_isReleased, true))
            m_release.set_value();
    }

private:
    std::shared_ptr<std::atomic_bool> m_begun = std::make_shared<std::atomic_bool>(false);
    std::promise<void> m_release;
    bool m_isReleased = false;
};
} // namespace

/// A search leaves the reading of pages to its worker: while that is busy the search waits and the main
/// thread goes on.
class RestWorkerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<RestFixture>(m_sandbox);
        m_queue = std::make_unique<RequestQueue>(m_fixture->clock, RequestQueue::Rate{4, 1050ms});
        m_session = std::make_shared<RestSession>(*m_queue, std::make_shared<RestLogins>(m_fixture->clock),
                                                  m_fixture->settings);
        m_worker = std::make_unique<WorkerThread>();
    }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_search.reset();
        m_worker.reset();
        m_session.reset();
        m_queue.reset();
        m_fixture.reset();
    }

    void pagesAreReadByTheWorker()
    {
        m_fixture->standIn.select(u"unreadable-records"_s); // an answer that ends the search once it is read
        const auto caught = search();
        HeldWorker held(*m_worker); // once it has looked for the page in the cache
        QTRY_COMPARE_WITH_TIMEOUT(asked(), 1, WaitLimit);
        QTRY_VERIFY_WITH_TIMEOUT(held.isHeld(), WaitLimit);
        waitForAnAnswer(); // that of the search has come before it
        QVERIFY(!caught->came());
        held.release();
        QCOMPARE(kindOf(*caught), ServiceFailure::BadAnswer);
    }

private:
    std::shared_ptr<Caught<QueryResult>> search()
    {
        auto caught = std::make_shared<Caught<QueryResult>>();
        const auto query =
            queryParameters({{Param::text, u"paper lighthouse"_s}, {Param::language, u"eng"_s}}, {}, true);
        const DiskCache cache(m_fixture->places().cache, 24h);
        m_search = std::make_shared<RestSearch>(
            RestSearch::Tools{m_session, *m_worker, m_fixture->clock, cache}, *query,
            [caught](const Result<QueryResult> &result) { caught->completion()(result); });
        m_search->start();
        return caught;
    }
    qsizetype asked() { return m_fixture->standIn.requests("/api/v1/subtitles").size(); }
    void waitForAnAnswer()
    {
        bool came = false;
        const HttpCall call = m_session->send({HttpRequest::Method::Get, u"/infos/languages"_s},
                                              RestSession::Login::IfThereIsOne,
                                              [&](const Result<HttpAnswer> &) { came = true; });
        QTRY_VERIFY_WITH_TIMEOUT(came, WaitLimit);
    }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
    std::unique_ptr<RequestQueue> m_queue;
    std::shared_ptr<RestSession> m_session;
    std::unique_ptr<WorkerThread> m_worker;
    std::shared_ptr<RestSearch> m_search;
};

PLOVENDIX_TEST(RestWorkerTest)
#include "RestWorkerTest.moc"
