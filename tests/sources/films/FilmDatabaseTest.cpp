#include "FilmFixture.h"

#include <net/Redactor.h>

using namespace Qt::StringLiterals;

class FilmDatabaseTest final : public FilmFixture
{
    Q_OBJECT

    static qsizetype count(const FindResult &found)
    {
        return found.movieResults.size() + found.tvResults.size();
    }

private Q_SLOTS:
    void filmIsFound()
    {
        films->preferredLanguage = u"pb"_s;
        const auto found = find();
        QVERIFY(!found->came());
        QCOMPARE(found->value().movieResults.size(), 1);
        QCOMPARE(found->value().tvResults.size(), 0);
        const ReceivedRequest request = requests().constFirst();
        QCOMPARE(request.target, "/3/find/tt9000002?external_source=imdb_id&language=pt-BR");
        QCOMPARE(request.header("Authorization"), "Bearer " + FilmStandIn::Token);
        QCOMPARE(request.header("Accept"), "application/json");
    }

    void idsAreNormalised_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"9000002", " TT09000002 ", "https://www.imdb.com/title/tt9000002/"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }
    void idsAreNormalised()
    {
        QFETCH(const QString, id);
        QCOMPARE(find(id)->value().movieResults.size(), 1);
    }

    void idsWithoutAFilmAreAnEmptyAnswer_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("asked");
        for (const char *id : {"", "nm9000003", "tt0", "abc", "tt12345678901"})
            QTest::newRow(id[0] == '\0' ? "(empty)" : id) << QString::fromLatin1(id) << 0;
        QTest::newRow("unknown") << u"tt1234567"_s << 1;
        QTest::newRow("not found") << Film << 1;
    }
    void idsWithoutAFilmAreAnEmptyAnswer()
    {
        QFETCH(const QString, id);
        if (id == Film)
            standIn->select(u"film-not-found"_s);
        const auto found = find(id);
        QVERIFY(!found->came());
        QCOMPARE(count(found->value()), 0);
        QTEST(int(requests().size()), "asked");
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
        settings.key = key;
        restart();
        if (!behaviour.isEmpty())
            standIn->select(behaviour);
        for (int time = 1; time <= 2; ++time) { // anew each time
            Caught<void> tested;
            films->testKey(tested.completion());
            QVERIFY(!tested.came());
            QTEST(*tested ? 0 : int(kindIn(tested)), "kind");
            QCOMPARE(standIn->requests("/3/configuration").size(), key.isEmpty() ? 0 : time);
        }
    }

    void newKeyIsHiddenAtOnce()
    {
        settings.key = u"entirely-fresh-secret"_s;
        films->setSettings(settings);
        QVERIFY(!redacted(u"said entirely-fresh-secret"_s).contains(u"entirely-fresh"_s));
    }

    void withoutAKeyNothingIsAsked()
    {
        settings.key.clear();
        restart();
        QCOMPARE(kindIn(*find()), ServiceFailure::KeyRefused);
        QCOMPARE(requests().size(), 0);
    }

    void showIsFoundByItsOwnId()
    {
        const FindResult found = find(u"tt9000001"_s)->value();
        QCOMPARE(found.movieResults.size(), 0);
        QCOMPARE(found.tvResults.size(), 1);
        QCOMPARE(requests().size(), 1);
    }

    void showStandsForItsEpisode()
    {
        const FindResult found = find(Episode)->value();
        QCOMPARE(found.movieResults.size(), 0);
        QCOMPARE(found.tvResults.size(), 1);
        QVERIFY(!image(found.tvResults[0])->value().isNull());
        QCOMPARE(imageRequests().constFirst().target, "/t/p/w154/show.jpg");
    }

    void questionEndsWhereItBegan()
    {
        StandIn other;
        const QByteArray key = settings.key.toLatin1();
        standIn->main().setObserver([&](const ReceivedRequest &, const ServedAnswer &) {
            settings = {other.filmURL(), u"quite-another-key"_s};
            films->setSettings(settings);
            films->preferredLanguage = u"de"_s;
        });
        QCOMPARE(find(Episode)->value().tvResults.size(), 1);
        const QList<ReceivedRequest> asked = standIn->requests("/3/");
        QCOMPARE(asked.size(), 2);
        QCOMPARE(asked[1].header("Authorization"), "Bearer " + key);
        QCOMPARE(asked[1].target, "/3/tv/12001?language=en-US");
        QCOMPARE(other.main().requests().size(), 0);
    }

    void badAnswersGiveTheirSentence_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, ServiceFailure kind, const QString &id = Film) {
            QTest::newRow(name) << QString::fromLatin1(name) << id << static_cast<int>(kind);
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
        row("html@show", ServiceFailure::BadAnswer, Episode);
    }
    void badAnswersGiveTheirSentence()
    {
        QFETCH(const QString, behaviour);
        QFETCH(const QString, id);
        standIn->select(behaviour);
        const auto found = find(id);
        QTEST(static_cast<int>(kindIn(*found)), "kind");
        QVERIFY(!found->error().detail.contains(QString::fromLatin1(FilmStandIn::Token)));
    }

    void tooFastIsWaitedFor()
    {
        standIn->select(u"film-too-fast"_s);
        find()->value();
        QCOMPARE(requests().size(), 2);
    }

    void databaseMayGoWhileItAsks()
    {
        find();
        const auto picture = imageAt("/a.jpg");
        QTRY_VERIFY_WITH_TIMEOUT(!requests().isEmpty(), WaitLimit);
        films.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!picture->came());
    }
};

PLOVENDIX_TEST(FilmDatabaseTest)
#include "FilmDatabaseTest.moc"
