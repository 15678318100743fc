#include "ScriptedSources.h"

#include <base/MainQueue.h>
#include <sources/combined/CombinedSubtitleService.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

/// A query by hash that finds nothing, and the query by words that follows at once.
class HashThenWordsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_catalogue = std::make_shared<ScriptedService>();
        m_rest = std::make_shared<ScriptedService>();
        m_names = std::make_shared<VideoNames>();
        m_answers = 0;
        m_last.reset();
        m_combined = std::make_unique<CombinedSubtitleService>(
            QList<CombinedSubtitleService::Source>{{u"catalogue"_s, m_catalogue, {}},
                                                   {u"rest"_s, m_rest, {}}},
            m_names, [] { return RankingPreferences(); });
    }
    void cleanup() { m_combined.reset(); }

    void hashThatTheCatalogueAnsweredIsNoFailure_data()
    {
        QTest::addColumn<int>("catalogue"); // rows, or a failure as a negative kind
        QTest::addColumn<int>("rest");
        QTest::addColumn<int>("outcome");
        const int offline = -static_cast<int>(ServiceFailure::Offline);
        const int bad = -static_cast<int>(ServiceFailure::BadAnswer);
        QTest::newRow("nothing and a failure") << 0 << offline << 0;
        QTest::newRow("rows and a failure") << 2 << offline << 2;
        QTest::newRow("a failure and nothing") << bad << 0 << bad;
        QTest::newRow("two failures") << bad << offline << bad;
    }
    void hashThatTheCatalogueAnsweredIsNoFailure()
    {
        QFETCH(const int, catalogue);
        QFETCH(const int, rest);
        QFETCH(const int, outcome);
        m_combined->query(Hash, answer());
        m_catalogue->waiting[0](made(catalogue, u"catalogue"_s));
        m_rest->waiting[0](made(rest, u"rest"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(m_last->hasValue(), outcome >= 0);
        if (outcome < 0)
            QCOMPARE(kindOf(m_last->error()), static_cast<ServiceFailure>(-outcome));
        else
            QCOMPARE(names().size(), outcome);
    }

    void wordsThatFollowAtOnceDoNotAskWhatIsOutOfReach_data()
    {
        QTest::addColumn<int>("failure");
        QTest::addColumn<bool>("isAskedAgain");
        QTest::newRow("time out") << static_cast<int>(ServiceFailure::Timeout) << false;
        QTest::newRow("key refused") << static_cast<int>(ServiceFailure::KeyRefused) << false;
        QTest::newRow("offline") << static_cast<int>(ServiceFailure::Offline) << true;
        QTest::newRow("language") << static_cast<int>(ServiceFailure::UnknownLanguage) << true;
    }
    void wordsThatFollowAtOnceDoNotAskWhatIsOutOfReach()
    {
        QFETCH(const int, failure);
        QFETCH(const bool, isAskedAgain);
        QList<int> told;
        m_combined->setGapsObserver([&told](const CombinedSubtitleService::Gaps &gaps) {
            for (const base::Error &error : gaps.failures)
                told += error.code;
        });
        const auto goOn = [this] { m_combined->query(Words, answer()); };
        m_combined->query(Hash, [&](const Result<QueryResult> &) { MainQueue::shared().async(goOn); });
        m_rest->waiting[0](::failure(static_cast<ServiceFailure>(failure)));
        m_catalogue->waiting[0](rows({}));
        QTRY_COMPARE_WITH_TIMEOUT(m_catalogue->waiting.size(), 2, WaitLimit);
        QCOMPARE(m_rest->waiting.size(), isAskedAgain ? 2 : 1);
        if (isAskedAgain)
            m_rest->waiting[1](::failure(static_cast<ServiceFailure>(failure)));
        m_catalogue->waiting[1](rows({subtitle(u"catalogue"_s, u"a"_s)}));
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.load(), 1, WaitLimit);
        QCOMPARE(names(), QStringList{u"a"_s});
        MainQueue::shared().runUntilIdle();
        QCOMPARE(told, (QList{failure, failure})); // with the rows as well
        query();
        QCOMPARE(m_rest->waiting.size(), isAskedAgain ? 3 : 2);
    }

    void wordsThatFollowACancelAskAgain()
    {
        m_combined->query(Hash, [this](const Result<QueryResult> &) {
            MainQueue::shared().async([this] {
                m_combined->cancelQueryTask();
                query();
            });
        });
        m_rest->waiting[0](failure(ServiceFailure::Timeout));
        m_catalogue->waiting[0](rows({}));
        QTRY_COMPARE_WITH_TIMEOUT(m_catalogue->waiting.size(), 2, WaitLimit);
        QCOMPARE(m_rest->waiting.size(), 2);
    }

private:
    SubtitleService::QueryCompletion answer()
    {
        return [this](const Result<QueryResult> &result) {
            m_last = std::make_unique<Result<QueryResult>>(result);
            ++m_answers;
        };
    }
    void query() { m_combined->query(Words, answer()); }

    QStringList names() const
    {
        QStringList result;
        for (const SubtitlePtr &one : (*m_last)->subtitles.value())
            result += one->subFileName;
        return result;
    }

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedService> m_catalogue;
    std::shared_ptr<ScriptedService> m_rest;
    std::shared_ptr<VideoNames> m_names;
    std::unique_ptr<Result<QueryResult>> m_last; // written before m_answers, read after it
    std::atomic<int> m_answers = 0;
    std::unique_ptr<CombinedSubtitleService> m_combined;
};

PLOVENDIX_TEST(HashThenWordsTest)
#include "HashThenWordsTest.moc"
