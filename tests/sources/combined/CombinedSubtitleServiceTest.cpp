#include "ScriptedSources.h"

#include <thread>

using namespace Qt::StringLiterals;

class CombinedSubtitleServiceTest final : public CombinedFixture
{
    Q_OBJECT

private Q_SLOTS:
    void bothAreAskedTheSameThing()
    {
        query();
        QCOMPARE(m_catalogue->queries, QList<QList<Arg>>{Words});
        QCOMPARE(m_rest->queries, QList<QList<Arg>>{Words});
    }

    void heldQueriesGoOutWhenItIsKnownWhoIsAsked()
    {
        m_asksRest = false;
        m_combined->hold();
        query();
        QCOMPARE(m_catalogue->queries.size(), 0);
        m_asksRest = true;
        m_combined->release();
        QCOMPARE(m_catalogue->queries, QList<QList<Arg>>{Words});
        QCOMPARE(m_rest->queries, QList<QList<Arg>>{Words});
        query();
        QCOMPARE(m_rest->queries.size(), 2);
    }

    void cancelledWhileHeldIsNeverAsked()
    {
        m_combined->hold();
        query();
        m_combined->cancelQueryTask();
        m_combined->release();
        QCOMPARE(m_catalogue->queries.size(), 0);
    }

    void oneAnswerWhenAllAreThere()
    {
        query();
        m_rest->waiting[0](rows({subtitle(u"rest"_s, u"b"_s), subtitle(u"rest"_s, u"exact"_s, true)}));
        QCOMPARE(m_answers.load(), 0);
        m_catalogue->waiting[0](rows({subtitle(u"catalogue"_s, u"a"_s)}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names(), (QStringList{u"exact"_s, u"a"_s, u"b"_s}));
    }

    void sameSubtitleAppearsOnceAndFromTheCatalogue()
    {
        query();
        m_rest->waiting[0](rows({subtitle(u"rest"_s, u"Paper.Lighthouse-ABC"_s)}));
        m_catalogue->waiting[0](rows({subtitle(u"catalogue"_s, u"Paper Lighthouse ABC.srt"_s)}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names(), QStringList{u"Paper Lighthouse ABC.srt"_s});
    }

    void rankingKnowsTheVideosName()
    {
        m_names->remember({u"8e245d9679d31e12"_s, 5}, u"Film.2019.1080p.WEB-ABC.mkv"_s);
        m_combined->query({{Param::byteSize, u"5"_s}, {Param::movieHash, u"8e245d9679d31e12"_s}}, answer());
        m_catalogue->waiting[0](rows({subtitle(u"catalogue"_s, u"Film.2019.720p.BluRay-XYZ"_s)}));
        m_rest->waiting[0](rows({subtitle(u"rest"_s, u"Film.2019.1080p.WEB-ABC"_s)}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names().constFirst(), u"Film.2019.1080p.WEB-ABC"_s);
    }

    void failuresCountOnlyWithoutRows_data()
    {
        QTest::addColumn<QList<Arg>>("args");
        QTest::addColumn<int>("catalogue"); // rows, or a failure as a negative kind
        QTest::addColumn<int>("rest");
        QTest::addColumn<int>("outcome");
        const int offline = -static_cast<int>(ServiceFailure::Offline);
        const int bad = -static_cast<int>(ServiceFailure::BadAnswer);
        QTest::newRow("rows and a failure") << Words << 2 << offline << 2;
        QTest::newRow("a failure and rows") << Words << bad << 3 << 3;
        QTest::newRow("nothing and a failure") << Words << 0 << offline << offline;
        QTest::newRow("a failure and nothing") << Words << bad << 0 << bad;
        QTest::newRow("two failures") << Words << bad << offline << bad;
        QTest::newRow("nothing at all") << Words << 0 << 0 << 0;
        // A hash that the catalogue answered leads to the words.
        QTest::newRow("by hash: rows and a failure") << Hash << 2 << offline << 2;
        QTest::newRow("by hash: nothing and a failure") << Hash << 0 << offline << 0;
        QTest::newRow("by hash: a failure and nothing") << Hash << bad << 0 << bad;
        QTest::newRow("by hash: two failures") << Hash << bad << offline << bad;
    }
    void failuresCountOnlyWithoutRows()
    {
        QFETCH(const QList<Arg>, args);
        QFETCH(const int, catalogue);
        QFETCH(const int, rest);
        QFETCH(const int, outcome);
        query(args);
        m_catalogue->waiting[0](made(catalogue, u"catalogue"_s));
        m_rest->waiting[0](made(rest, u"rest"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(m_last->hasValue(), outcome >= 0);
        if (outcome < 0)
            QCOMPARE(kindOf(m_last->error()), static_cast<ServiceFailure>(-outcome));
        else
            QCOMPARE(names().size(), outcome);
    }

    void gapsAreReportedBeforeTheAnswer()
    {
        QStringList told;
        m_combined->setGapsObserver([&told](const CombinedSubtitleService::Gaps &gaps) {
            QVERIFY(MainQueue::isMainThread());
            for (auto it = gaps.failures.cbegin(); it != gaps.failures.cend(); ++it)
                told += it.key() + u' ' + QString::number(static_cast<int>(*kindOf(*it)));
            told += u"told %1"_s.arg(gaps.leftOut);
        });
        const auto ask = [&] {
            m_combined->query(Words, [&told](const Result<QueryResult> &) {
                MainQueue::shared().async([&told] { told += u"shown"_s; });
            });
        };
        ask();
        m_catalogue->waiting[0](rows({subtitle(u"catalogue"_s, u"a"_s)}));
        m_rest->waiting[0](failure(ServiceFailure::Offline));
        QTRY_COMPARE_WITH_TIMEOUT(told, (QStringList{u"rest 1"_s, u"told 0"_s, u"shown"_s}), WaitLimit);
        told.clear();
        ask();
        m_catalogue->waiting[1](rows({subtitle(u"catalogue"_s, u"a"_s)}));
        m_rest->waiting[1](rows({}));
        QTRY_COMPARE_WITH_TIMEOUT(told, (QStringList{u"told 0"_s, u"shown"_s}), WaitLimit);
    }

    void rowsLeftOutAreCounted()
    {
        qint64 told = 0;
        m_combined->setGapsObserver(
            [&told](const CombinedSubtitleService::Gaps &gaps) { told = gaps.leftOut; });
        query();
        QueryResult many = rows({});
        for (int i = 0; i < 2500; ++i)
            *many.subtitles += subtitle(u"rest"_s, QString::number(i));
        many.leftOut = 40;
        m_rest->waiting[0](many);
        m_catalogue->waiting[0](rows({subtitle(u"catalogue"_s, u"a"_s)}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names().size(), 2000);
        QCOMPARE((*m_last)->leftOut, 541);
        QTRY_COMPARE_WITH_TIMEOUT(told, 541, WaitLimit);
    }

    void sourceThatIsNotToBeAskedIsNot()
    {
        m_asksRest = false;
        query();
        QCOMPARE(m_rest->queries.size(), 0);
        m_catalogue->waiting[0](rows({}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QVERIFY(*m_last);
    }

    void cancelDropsEverything()
    {
        query();
        query();
        m_combined->cancelQueryTask();
        QCOMPARE(m_catalogue->cancels, 1);
        QCOMPARE(m_rest->cancels, 1);
        // Answers that come all the same, and one to a later query.
        query();
        for (int i = 0; i < 3; ++i) {
            m_catalogue->waiting[i](rows({subtitle(u"catalogue"_s, QString::number(i))}));
            m_rest->waiting[i](rows({}));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names(), QStringList{u"2"_s});
    }

    void answersBeforeTheCallReturnsComeLater()
    {
        class Eager final : public SubtitleService
        {
        public:
            void query(const QList<Arg> &, QueryCompletion completion) override { completion(QueryResult()); }
            void cancelQueryTask() override {}
            void download(const SubtitlePtr &, DownloadCompletion) override {}
            void cancelDownloads() override {}
        };
        // Of no source at all, too.
        for (const bool asked : {true, false}) {
            CombinedSubtitleService combined({{u"x"_s, std::make_shared<Eager>(), [asked] { return asked; }}},
                                             m_names, [] { return RankingPreferences(); });
            std::atomic<int> count = 0;
            combined.query(Words, [&](const Result<QueryResult> &) { ++count; });
            QTRY_COMPARE_WITH_TIMEOUT(count.load(), 1, WaitLimit);
        }
    }

    void sourcesMayAnswerOnTheirThreads()
    {
        constexpr int Queries = 20;
        for (int i = 0; i < Queries; ++i)
            query();
        std::thread one([this] {
            for (const auto &completion : m_catalogue->waiting)
                completion(rows({subtitle(u"catalogue"_s, u"a"_s)}));
        });
        std::thread other([this] {
            for (const auto &completion : m_rest->waiting)
                completion(rows({subtitle(u"rest"_s, u"b"_s)}));
        });
        one.join();
        other.join();
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), Queries, WaitLimit);
    }

    void serviceMayGoBeforeItsAnswers()
    {
        query();
        m_combined.reset();
        m_catalogue->waiting[0](rows({}));
        m_rest->waiting[0](rows({}));
        QCOMPARE(m_answers.load(), 0);
    }

    void cancelledDownloadsAreCancelledEverywhere()
    {
        m_combined->cancelDownloads();
        QCOMPARE(m_catalogue->downloadCancels, 1);
        QCOMPARE(m_rest->downloadCancels, 1);
        QCOMPARE(m_catalogue->cancels, 0);
    }

    void downloadsGoToTheirService()
    {
        const SubtitlePtr ours = subtitle(u"catalogue"_s, u"a"_s);
        const SubtitlePtr theirs = subtitle(u"rest"_s, u"b"_s);
        int came = 0;
        const auto count = [&](const Result<QUrl> &result) { came += result ? 1 : 0; };
        m_combined->download(ours, count);
        m_combined->download(theirs, count);
        QCOMPARE(came, 2);
        QCOMPARE(m_catalogue->downloads, QList{ours});
        QCOMPARE(m_rest->downloads, QList{theirs});
    }

    void downloadOfUnknownSourceIsAnError()
    {
        std::optional<Result<QUrl>> came;
        m_combined->download(subtitle(u"gone"_s, u"a"_s), [&](const Result<QUrl> &result) { came = result; });
        QVERIFY(!came);
        QTRY_VERIFY_WITH_TIMEOUT(came, WaitLimit);
        QVERIFY(!*came);
        QVERIFY(!came->error().localizedDescription.isEmpty());
    }

    void hashingRemembersTheName()
    {
        const QString path = m_sandbox.writeFile(u"Some.Film.2019.mkv"_s, QByteArray(131072, '\0'));
        std::shared_ptr<SubtitleService> shared = std::move(m_combined);
        SubtitleService::setShared(shared);
        const auto hash = SubtitleService::hashFor(QUrl::fromLocalFile(path));
        QVERIFY(hash);
        QCOMPARE(hash->hash, u"0000000000020000"_s);
        QCOMPARE(m_names->nameOf(*hash), u"Some.Film.2019.mkv"_s);
        QCOMPARE(VideoFileUtilities::componentsFrom(QUrl::fromLocalFile(path)).title, u"Some Film"_s);
        QVERIFY(!SubtitleService::hashFor(QUrl(u"file:///no/such/file"_s)));
        SubtitleService::setShared({});
    }
};

PLOVENDIX_TEST(CombinedSubtitleServiceTest)
#include "CombinedSubtitleServiceTest.moc"
