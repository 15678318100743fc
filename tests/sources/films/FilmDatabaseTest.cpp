#include "FilmFixture.h"

#include <net/Redactor.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FilmDatabaseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<FilmFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void filmIsFound()
    {
        m_fixture->films->preferredLanguage = u"pb"_s;
        const auto found = m_fixture->find(u"tt9000002"_s);
        QVERIFY(!found->came());
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE((**found)->movieResults.size(), 1);
        QCOMPARE((**found)->tvResults.size(), 0);
        const ReceivedRequest request = m_fixture->standIn.main().requests().constFirst();
        QCOMPARE(request.target, "/3/find/tt9000002?external_source=imdb_id&language=pt-BR");
        QCOMPARE(request.header("Authorization"), "Bearer " + FilmStandIn::Token);
        QCOMPARE(request.header("Accept"), "application/json");
    }

    void idsAreNormalised_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id :
             {"tt9000002", "9000002", " TT09000002 ", "https://www.imdb.com/title/tt9000002/"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }
    void idsAreNormalised()
    {
        QFETCH(const QString, id);
        const auto found = m_fixture->find(id);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE((**found)->movieResults.size(), 1);
    }

    void keyIsTested_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("kind"); // 0 for accepted
        const QString token = QString::fromLatin1(FilmStandIn::Token);
        QTest::newRow("good") << token << QString() << 0;
        QTest::newRow("short and good") << QString::fromLatin1(FilmStandIn::Key) << QString() << 0;
        QTest::newRow("none") << QString() << QString() << int(ServiceFailure::KeyRefused);
        QTest::newRow("wrong") << u"other"_s << QString() << int(ServiceFailure::KeyRefused);
        QTest::newRow("a page") << token << u"html@configuration"_s << int(ServiceFailure::BadAnswer);
    }
    void keyIsTested()
    {
        QFETCH(const QString, key);
        QFETCH(const QString, behaviour);
        QFETCH(const int, kind);
        m_fixture->settings.key = key;
        m_fixture->restart();
        if (!behaviour.isEmpty())
            m_fixture->standIn.select(behaviour);
        Caught<void> tested;
        m_fixture->films->testKey(tested.completion());
        QVERIFY(!tested.came());
        QTRY_VERIFY_WITH_TIMEOUT(tested.came(), WaitLimit);
        QCOMPARE(*tested ? 0 : int(kindIn(tested)), kind);
        QCOMPARE(m_fixture->standIn.requests("/3/configuration").size(), key.isEmpty() ? 0 : 1);
    }

    void testIsAskedAnewEachTime()
    {
        for (int time = 1; time <= 2; ++time) {
            Caught<void> tested;
            m_fixture->films->testKey(tested.completion());
            QTRY_VERIFY_WITH_TIMEOUT(tested.came(), WaitLimit);
            QCOMPARE(m_fixture->standIn.requests("/3/configuration").size(), time);
        }
    }

    void invalidIdsSendNoRequest_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"", "nm9000003", "tt0", "abc", "tt12345678901"})
            QTest::newRow(id[0] == '\0' ? "(empty)" : id) << QString::fromLatin1(id);
    }
    void invalidIdsSendNoRequest()
    {
        QFETCH(const QString, id);
        const auto found = m_fixture->find(id);
        QVERIFY(!found->came());
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(**found);
        QCOMPARE((**found)->movieResults.size() + (**found)->tvResults.size(), 0);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void unknownFilmIsAnEmptyAnswer()
    {
        const auto found = m_fixture->find(u"tt1234567"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(**found);
        QCOMPARE((**found)->movieResults.size(), 0);
    }

    void whatTheDatabaseDoesNotKnowIsAnEmptyAnswer()
    {
        m_fixture->standIn.select(u"film-not-found"_s);
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY2(**found, **found ? "" : qPrintable((*found)->error().detail));
        QCOMPARE((**found)->movieResults.size() + (**found)->tvResults.size(), 0);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 1);
    }

    void newKeyIsHiddenAtOnce()
    {
        m_fixture->settings.key = u"quite-another-key"_s;
        m_fixture->films->setSettings(m_fixture->settings);
        QVERIFY(!redacted(u"said quite-another-key"_s).contains(u"quite-another"_s));
    }

    void showIsFoundByItsOwnId()
    {
        const auto found = m_fixture->find(u"tt9000001"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE((**found)->movieResults.size(), 0);
        QCOMPARE((**found)->tvResults.size(), 1);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 1);
    }

    void showStandsForItsEpisode()
    {
        const auto found = m_fixture->find(u"tt9000011"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE((**found)->movieResults.size(), 0);
        QCOMPARE((**found)->tvResults.size(), 1);
        const auto picture = m_fixture->image((**found)->tvResults[0]);
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY(**picture);
        QCOMPARE(m_fixture->standIn.images().requests().constFirst().target, "/t/p/w154/show.jpg");
    }

    void questionEndsWhereItBegan()
    {
        StandIn other;
        const QByteArray key = m_fixture->settings.key.toLatin1();
        m_fixture->standIn.main().setObserver([&](const ReceivedRequest &, const ServedAnswer &) {
            m_fixture->settings.base = other.filmURL();
            m_fixture->settings.key = u"quite-another-key"_s;
            m_fixture->films->setSettings(m_fixture->settings);
            m_fixture->films->preferredLanguage = u"de"_s;
        });
        const auto found = m_fixture->find(u"tt9000011"_s); // an episode: its show is asked for next
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY2(**found, **found ? "" : qPrintable((*found)->error().detail));
        QCOMPARE((**found)->tvResults.size(), 1);
        const QList<ReceivedRequest> requests = m_fixture->standIn.requests("/3/");
        QCOMPARE(requests.size(), 2);
        QCOMPARE(requests[1].header("Authorization"), "Bearer " + key);
        QCOMPARE(requests[1].target, "/3/tv/12001?language=en-US");
        QCOMPARE(other.main().requests().size(), 0);
    }

    void badAnswersGiveTheirSentence_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, ServiceFailure kind) {
            QTest::newRow(name) << QString::fromLatin1(name) << static_cast<int>(kind);
        };
        row("film-key-refused", ServiceFailure::KeyRefused);
        row("down@find", ServiceFailure::Unavailable);
        row("html@find", ServiceFailure::BadAnswer);
        row("null@find", ServiceFailure::BadAnswer);
        row("array@find", ServiceFailure::BadAnswer);
        row("cut@find", ServiceFailure::BadAnswer);
        row("empty@find", ServiceFailure::BadAnswer);
        row("no-content@find", ServiceFailure::BadAnswer);
        row("sign-in-page@find", ServiceFailure::BadAnswer);
        row("20-mib@find", ServiceFailure::BadAnswer);
        row("length-too-long@find", ServiceFailure::Unavailable);
    }
    void badAnswersGiveTheirSentence()
    {
        QFETCH(const QString, behaviour);
        m_fixture->standIn.select(behaviour);
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(!**found);
        QTEST(static_cast<int>(kindIn(*found)), "kind");
        QVERIFY(!(*found)->error().detail.contains(QString::fromLatin1(FilmStandIn::Token)));
    }

    void tooFastIsWaitedFor()
    {
        m_fixture->standIn.select(u"film-too-fast"_s);
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(**found);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 2);
    }

    void showThatFailsIsAnError()
    {
        m_fixture->standIn.select(u"html@show"_s);
        const auto found = m_fixture->find(u"tt9000011"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QVERIFY(!**found);
    }

    void withoutAKeyNothingIsAsked()
    {
        m_fixture->settings.key.clear();
        m_fixture->restart();
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE(kindIn(*found), ServiceFailure::KeyRefused);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void databaseMayGoWhileItAsks()
    {
        const auto found = m_fixture->find(u"tt9000002"_s);
        const auto picture = m_fixture->image({QVariantMap{{u"poster"_s, u"/a.jpg"_s}}});
        QTRY_VERIFY_WITH_TIMEOUT(!m_fixture->standIn.main().requests().isEmpty(), WaitLimit);
        m_fixture->films.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!picture->came());
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<FilmFixture> m_fixture;
};

PLOVENDIX_TEST(FilmDatabaseTest)
#include "FilmDatabaseTest.moc"
