#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RestSearchTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void searchByHashSendsTheNameAsWell()
    {
        m_fixture->names->remember({u"8e245d9679d31e12"_s, 12909756},
                                   u"Paper.Lighthouse.2019.1080p.WEB-ABC.mkv"_s);
        const auto caught = m_fixture->query({{Param::byteSize, u"12909756"_s},
                                              {Param::movieHash, u"8e245d9679d31e12"_s},
                                              {Param::language, u"pob"_s}});
        QVERIFY(!caught->came());
        const QList<SubtitlePtr> rows = caught->value().subtitles.value();
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0]->subLanguageID, u"pob"_s);
        const ReceivedRequest request = m_fixture->standIn.main().requests().constFirst();
        QCOMPARE(request.query(),
                 "languages=pt-br&moviehash=8e245d9679d31e12&query=paper.lighthouse.2019.1080p.web-abc.mkv");
        QCOMPARE(request.header("Api-Key"), SubtitleStandIn::ApiKey.toLatin1());
    }

    void onlyWhatMatchesIsSaidTo()
    {
        m_fixture->standIn.select({u"hits-50"_s, u"mixed-matches"_s});
        const auto caught =
            m_fixture->query({{Param::byteSize, u"1"_s}, {Param::movieHash, u"8e245d9679d31e12"_s}});
        const QList<SubtitlePtr> rows = caught->value().subtitles.value();
        QCOMPARE(rows.size(), 50);
        int matches = 0;
        for (const SubtitlePtr &row : rows) {
            matches += row->matchesHash ? 1 : 0;
            QCOMPARE(row->detailString().contains(u"matches this file"_s), row->matchesHash);
        }
        QCOMPARE(matches, 25);
    }

    void pagesAreReadToTheEnd_data()
    {
        QTest::addColumn<QStringList>("behaviours");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("requests");
        QTest::newRow("none") << QStringList{u"hits-0"_s} << 0 << 1;
        QTest::newRow("one") << QStringList{u"hits-1"_s} << 1 << 1;
        QTest::newRow("a page") << QStringList{u"hits-50"_s} << 50 << 1;
        QTest::newRow("a page and one") << QStringList{u"hits-51"_s} << 51 << 2;
        QTest::newRow("31 pages end at the cap") << QStringList{u"hits-1502"_s} << 500 << 10;
        QTest::newRow("pages promised in vain") << QStringList{u"hits-51"_s, u"pages-too-many"_s} << 51 << 2;
        // Those that were on their way when it was known that they are in vain may come as well.
        QTest::newRow("an empty page") << QStringList{u"hits-1502"_s, u"page-empty"_s} << 50 << -10;
        QTest::newRow("the same page again") << QStringList{u"hits-1502"_s, u"page-repeats"_s} << 50 << -10;
        QTest::newRow("odd records") << QStringList{u"odd-records"_s} << 26 << 1;
        QTest::newRow("some bad records") << QStringList{u"one-bad-record"_s} << 3 << 1;
    }
    void pagesAreReadToTheEnd()
    {
        QFETCH(const QStringList, behaviours);
        QFETCH(const int, rows);
        QFETCH(const int, requests);
        m_fixture->standIn.select(behaviours);
        const auto caught = m_fixture->search();
        caught->value();
        QCOMPARE(caught->value().subtitles->size(), rows);
        const qsizetype made = m_fixture->standIn.requests("/api/v1/subtitles").size();
        QVERIFY2(requests < 0 ? made <= -requests : made == requests, qPrintable(QString::number(made)));
    }

    void pagesAfterTheFirstAreAskedForSideBySide()
    {
        const auto caught = searchUpToTheFirstPage();
        QVERIFY(caught);
        m_fixture->standIn.select({u"hits-1502"_s, u"silent"_s});
        // Four are the rate; none of the last three is answered.
        QTRY_COMPARE_WITH_TIMEOUT(requestsNow(), 4, WaitLimit);
        QVERIFY(!caught->came());
        m_fixture->service->cancelQueryTask();
    }

    void leftOutRecordsAreCounted()
    {
        m_fixture->standIn.select(u"hits-1502"_s);
        QTest::ignoreMessage(QtInfoMsg, "1002 of 1502 records left out");
        const auto caught = m_fixture->search();
        QCOMPARE(caught->value().leftOut, 1002);
    }

    void serviceDyingInTheMiddleLeavesWhatWasFound()
    {
        const auto caught = searchUpToTheFirstPage();
        QVERIFY(caught);
        QTRY_COMPARE_WITH_TIMEOUT(requestsNow(), 4, WaitLimit);
        m_fixture->standIn.stop();
        m_fixture->clock.setLongestAutomaticWait(5s);
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->comesInTime(*caught), WaitLimit);
        QVERIFY(**caught);
        QVERIFY(caught->value().subtitles->size() >= 50);
        QVERIFY(caught->value().subtitles->size() <= 200);
        QCOMPARE(caught->value().leftOut, 1502 - caught->value().subtitles->size());
    }

    void secondSearchComesFromTheCache()
    {
        m_fixture->search()->value();
        m_fixture->restart();
        const auto second = m_fixture->search();
        QCOMPARE(second->value().subtitles->size(), 3);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 1);
    }

    void cachedAnswersAgeOut_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("minutes");
        QTest::addColumn<int>("requests");
        QTest::newRow("found, in a day") << u"hits-1"_s << 24 * 60 - 1 << 1;
        QTest::newRow("found, after a day") << u"hits-1"_s << 24 * 60 + 1 << 2;
        QTest::newRow("nothing, in an hour") << u"hits-0"_s << 59 << 1;
        QTest::newRow("nothing, after an hour") << u"hits-0"_s << 61 << 2;
        QTest::newRow("clock set back") << u"hits-1"_s << -60 << 2;
    }
    void cachedAnswersAgeOut()
    {
        QFETCH(const QString, behaviour);
        QFETCH(const int, minutes);
        QFETCH(const int, requests);
        m_fixture->standIn.select(behaviour);
        m_fixture->search()->value();
        m_fixture->clock.setDate(m_fixture->clock.date().addSecs(60LL * minutes));
        m_fixture->search()->value();
        QCOMPARE(m_fixture->standIn.main().requests().size(), requests);
    }

    void emptiedCacheAsksAgain()
    {
        m_fixture->search()->value();
        m_fixture->service->emptyCache();
        m_fixture->search()->value();
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void cacheHoldsNoSecrets()
    {
        m_fixture->useAccount();
        m_fixture->search()->value();
        QDir folder(m_fixture->places().cache);
        const QFileInfoList files = folder.entryInfoList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QFile file(files.constFirst().filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        QVERIFY(!content.contains(SubtitleStandIn::ApiKey.toLatin1()));
        QVERIFY(!content.contains(SubtitleStandIn::Password.toLatin1()));
    }

    void cancelledQueriesAreNeverAnswered()
    {
        m_fixture->standIn.select(u"silent"_s);
        const auto first = m_fixture->search();
        const auto second = m_fixture->search(u"another one"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.main().requests().size(), 2, WaitLimit);
        m_fixture->service->cancelQueryTask();
        QCOMPARE(m_fixture->clock.pending(), QList<Clock::Duration>()); // no time limit runs for them
        m_fixture->standIn.clearBehaviours();
        const auto third = m_fixture->search(u"a third"_s);
        third->value();
        QVERIFY(!first->came());
        QVERIFY(!second->came());
    }

    void answerOnItsWayIsDroppedByACancel()
    {
        const auto refused = m_fixture->query({{Param::text, QString()}});
        m_fixture->service->cancelQueryTask();
        m_fixture->search()->value();
        QVERIFY(!refused->came());
    }

    void queriesSideBySideAreEachAnswered()
    {
        const auto first = m_fixture->search(u"one"_s);
        const auto second = m_fixture->search(u"two"_s);
        const auto third = m_fixture->search(u"three"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came() && second->came() && third->came(), WaitLimit);
        QVERIFY(**first && **second && **third);
    }

    void unknownLanguageIsSaidWithoutAsking()
    {
        const auto caught = m_fixture->query({{Param::text, u"x"_s}, {Param::language, u"mlt"_s}});
        QVERIFY(!caught->came());
        QCOMPARE(kindOf(*caught), ServiceFailure::UnknownLanguage);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void withoutAKeyNothingIsAsked()
    {
        m_fixture->settings.apiKey.clear();
        m_fixture->restart();
        QCOMPARE(kindOf(*m_fixture->search()), ServiceFailure::KeyRefused);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void serviceMayGoWhileItSearches()
    {
        const auto caught = searchUpToTheFirstPage();
        QVERIFY(caught);
        QTRY_COMPARE_WITH_TIMEOUT(requestsNow(), 4, WaitLimit);
        m_fixture->service.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!caught->came());
    }

private:
    /// A search of many pages, on a clock that moves only when the test says, until the first page
    /// is asked for; nothing when it never is.
    std::shared_ptr<Caught<QueryResult>> searchUpToTheFirstPage()
    {
        m_fixture->standIn.select(u"hits-1502"_s);
        m_fixture->clock.setLongestAutomaticWait(-1ms);
        const auto caught = m_fixture->search();
        const bool isAsked = QTest::qWaitFor([this] { return requestsNow() == 1; }, WaitLimit);
        return isAsked ? caught : nullptr;
    }
    /// How many were made, once those that are due have left.
    qsizetype requestsNow()
    {
        m_fixture->clock.advance(0ms);
        return m_fixture->standIn.main().requests().size();
    }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestSearchTest)
#include "RestSearchTest.moc"
