#include "RestFixture.h"

#include <sources/online/RestQuery.h>
#include <sources/online/RestSearch.h>
#include <tests/support/TestMain.h>

#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A search leaves the reading of pages to its worker: while that is busy the search waits and the main
/// thread goes on.
class RestWorkerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesAreReadByTheWorker()
    {
        RestFixture fixture(m_sandbox);
        fixture.standIn.select(u"unreadable-records"_s); // an answer that ends the search once it is read
        RequestQueue queue(fixture.clock, {4, 1050ms});
        const auto session = std::make_shared<RestSession>(queue, std::make_shared<RestLogins>(fixture.clock),
                                                           fixture.settings);
        WorkerThread worker;
        std::promise<void> release;
        Caught<QueryResult> caught;
        const auto search = std::make_shared<RestSearch>(
            RestSearch::Tools{session, worker, fixture.clock, DiskCache(fixture.places().cache, 24h)},
            *queryParameters({{Param::text, u"paper lighthouse"_s}}, {}, true), caught.completion());
        search->start();
        worker.post([held = release.get_future().share()] { held.wait(); }); // after looking into the cache
        QTRY_COMPARE_WITH_TIMEOUT(fixture.standIn.requests("/api/v1/subtitles").size(), 1, WaitLimit);
        bool isAnswered = false; // a request that follows that of the search
        const HttpCall call =
            session->send({HttpRequest::Method::Get, u"/infos/languages"_s}, RestSession::Login::IfThereIsOne,
                          [&](const Result<HttpAnswer> &) { isAnswered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isAnswered, WaitLimit);
        QVERIFY(!caught.came());
        release.set_value();
        QCOMPARE(kindOf(caught), ServiceFailure::BadAnswer);
        QCOMPARE(fixture.standIn.complaints(), QStringList());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(RestWorkerTest)
#include "RestWorkerTest.moc"
