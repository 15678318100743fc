#include "FilmFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FilmCacheTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<FilmFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void answersAreKept()
    {
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->restart();
        const auto second = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QVERIFY(**second);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2); // find and configuration, once
        QCOMPARE(m_fixture->standIn.images().requests().size(), 1);
    }

    void staleAnswersAreAskedAboutAgain()
    {
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->pass(31 * 24h);
        const auto second = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QVERIFY(**second);
        QVERIFY(!m_fixture->standIn.images().requests().constLast().header("If-None-Match").isEmpty());
        // "Not changed" makes it fresh once more.
        m_fixture->pass(20 * 24h);
        const auto third = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(third->came(), WaitLimit);
        QCOMPARE(m_fixture->standIn.images().requests().size(), 2);
    }

    void serversLifetimeIsObeyed()
    {
        const auto first = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->pass(59min);
        const auto second = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 1);
        m_fixture->pass(2min);
        const auto third = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(third->came(), WaitLimit);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void uncacheableAnswersAreNotKept()
    {
        m_fixture->standIn.select(u"film-no-store"_s);
        for (int time = 1; time <= 2; ++time) {
            const auto found = m_fixture->find(u"tt9000002"_s);
            QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
            QCOMPARE((**found)->movieResults.size(), 1);
            QCOMPARE(m_fixture->standIn.main().requests().size(), time);
            QVERIFY(m_fixture->standIn.main().requests().constLast().header("If-None-Match").isEmpty());
        }
        QCOMPARE(QDir(m_fixture->folder()).entryInfoList(QDir::Files).size(), 0);
    }

    void changedPostersReplaceTheOldOnes()
    {
        m_fixture->standIn.select(u"poster-changes"_s);
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        QByteArray lastTag;
        for (int time = 2; time <= 3; ++time) {
            m_fixture->pass(31 * 24h);
            const auto again = m_fixture->posterOf(u"tt9000002"_s);
            QTRY_VERIFY_WITH_TIMEOUT(again->came(), WaitLimit);
            QVERIFY(**again);
            QCOMPARE(m_fixture->standIn.images().requests().size(), time);
            // Asked with the tag of the one that came last.
            const QByteArray tag = m_fixture->standIn.images().requests().constLast().header("If-None-Match");
            QVERIFY(!tag.isEmpty() && tag != lastTag);
            lastTag = tag;
        }
    }

    void staleAnswersServeWhenTheServerFails()
    {
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->pass(60 * 24h);
        m_fixture->standIn.stop();
        const auto second = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QVERIFY(**second);
    }

    void oldAnswersHelpWhenSomebodyElseAnswers()
    {
        const auto first = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->pass(8 * 24h);
        m_fixture->standIn.select(u"html@find"_s);
        const auto second = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QVERIFY(**second);
        QCOMPARE((**second)->movieResults.size(), 1);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void keptAnswerThatCannotBeReadIsNone()
    {
        const QDateTime date = m_fixture->clock.date();
        const QString key = m_fixture->settings.cacheKey(
            u"/find/tt9000002"_s, {{u"external_source"_s, u"imdb_id"_s}, {u"language"_s, u"en-US"_s}});
        DiskCache(m_fixture->folder(), 24h).store(key, {"{}", "tag", date, date.addDuration(24h)});
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(**found);
        QCOMPARE((**found)->movieResults.size(), 1);
        QVERIFY(m_fixture->standIn.main().requests().constFirst().header("If-None-Match").isEmpty());
    }

    void nothingIsKeptLongerThanTheTermsAllow()
    {
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->pass(181 * 24h);
        m_fixture->standIn.stop();
        const auto second = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QCOMPARE(kindIn(*second), ServiceFailure::Unavailable);
    }

    void emptiedCacheAsksAgain()
    {
        const auto first = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->films->emptyCache();
        const auto second = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void otherLanguagesAreOtherAnswers()
    {
        const auto first = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        m_fixture->films->preferredLanguage = u"de"_s;
        const auto second = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void shortKeysWorkToo()
    {
        m_fixture->settings.key = QString::fromLatin1(FilmStandIn::Key);
        m_fixture->restart();
        const auto picture = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY(**picture);
        for (const QFileInfo &file : QDir(m_fixture->folder()).entryInfoList(QDir::Files)) {
            QFile kept(file.filePath());
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QVERIFY(!kept.readAll().contains(FilmStandIn::Key));
        }
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<FilmFixture> m_fixture;
};

PLOVENDIX_TEST(FilmCacheTest)
#include "FilmCacheTest.moc"
