#include "ScriptedSources.h"

using namespace Qt::StringLiterals;

/// A query by hash that finds nothing, and the query by words that follows at once.
class HashThenWordsTest final : public CombinedFixture
{
    Q_OBJECT

private Q_SLOTS:
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
};

PLOVENDIX_TEST(HashThenWordsTest)
#include "HashThenWordsTest.moc"
