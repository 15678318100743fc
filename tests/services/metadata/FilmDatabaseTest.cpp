#include <platform/MainQueue.h>
#include <services/metadata/FilmDatabase.h>
#include <standin/Caught.h>
#include <standin/StandIn.h>
#include <support/Sandbox.h>

#include <QDir>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr QSize PosterPoints(154, 154);

template <class Value>
Kind kindIn(const Caught<Value> &caught)
{
    return kindOf((*caught).error()).value_or(static_cast<Kind>(0));
}
} // namespace

class FilmDatabaseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_standIn = std::make_unique<StandIn>(*m_clock);
        QDir(m_sandbox.path(u"films"_s)).removeRecursively();
        m_ratio = 1;
        m_settings.base = m_standIn->filmURL();
        m_settings.key = QString::fromLatin1(FilmStandIn::Token);
        restart();
    }
    void cleanup()
    {
        QCOMPARE(m_standIn->complaints(), QStringList());
        m_films.reset();
        MainQueue::shared().clear();
    }

    void filmIsFound()
    {
        m_films->preferredLanguage = u"pb"_s;
        const auto found = find(u"tt9000002"_s);
        QVERIFY(!found->came());
        QTRY_VERIFY(found->came());
        QCOMPARE((**found)->movieResults.size(), 1);
        QCOMPARE((**found)->tvResults.size(), 0);
        const ReceivedRequest request = m_standIn->main().requests().constFirst();
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
        const auto found = find(id);
        QTRY_VERIFY(found->came());
        QCOMPARE((**found)->movieResults.size(), 1);
    }

    void whatIsNoIdAsksNobody_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"", "nm9000003", "tt0", "abc", "tt12345678901"})
            QTest::newRow(id[0] == '\0' ? "(empty)" : id) << QString::fromLatin1(id);
    }
    void whatIsNoIdAsksNobody()
    {
        QFETCH(const QString, id);
        const auto found = find(id);
        QVERIFY(!found->came());
        QTRY_VERIFY(found->came());
        QVERIFY(**found);
        QCOMPARE((**found)->movieResults.size() + (**found)->tvResults.size(), 0);
        QCOMPARE(m_standIn->main().requests().size(), 0);
    }

    void unknownFilmIsAnEmptyAnswer()
    {
        const auto found = find(u"tt1234567"_s);
        QTRY_VERIFY(found->came());
        QVERIFY(**found);
        QCOMPARE((**found)->movieResults.size(), 0);
    }

    void showStandsForItsEpisode()
    {
        const auto found = find(u"tt9000011"_s);
        QTRY_VERIFY(found->came());
        QCOMPARE((**found)->movieResults.size(), 0);
        QCOMPARE((**found)->tvResults.size(), 1);
        const auto picture = image((**found)->tvResults[0]);
        QTRY_VERIFY(picture->came());
        QVERIFY(**picture);
        QCOMPARE(m_standIn->images().requests().constFirst().target, "/t/p/w154/show.jpg");
    }

    void posterHasThePixelsOfTheScreen_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("1") << 1.0 << QByteArray("/t/p/w154/film.jpg");
        QTest::newRow("2") << 2.0 << QByteArray("/t/p/w342/film.jpg");
        QTest::newRow("3") << 3.0 << QByteArray("/t/p/w500/film.jpg");
    }
    void posterHasThePixelsOfTheScreen()
    {
        QFETCH(const double, ratio);
        QFETCH(const QByteArray, target);
        m_ratio = ratio;
        const auto picture = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(picture->came());
        QVERIFY2(**picture, **picture ? "" : qPrintable((*picture)->error().detail));
        const QImage poster = ***picture;
        QCOMPARE(poster.width(), static_cast<int>(154 * ratio));
        QCOMPARE(poster.devicePixelRatio(), ratio);
        QCOMPARE(poster.height(), poster.width() * 3 / 2);
        const ReceivedRequest request = m_standIn->images().requests().constFirst();
        QCOMPARE(request.target, target);
        QVERIFY(request.header("Authorization").isEmpty());
    }

    void filmWithoutAPosterHasNone()
    {
        const auto picture = posterOf(u"tt9000004"_s);
        QTRY_VERIFY(picture->came());
        QVERIFY(!**picture);
        QCOMPARE(m_standIn->images().requests().size(), 0);
    }

    void foreignItemsHaveNone()
    {
        const auto picture = image({QVariantList{u"/some/catalogue"_s, 5}});
        QVERIFY(!picture->came());
        QTRY_VERIFY(picture->came());
        QVERIFY(!**picture);
    }

    void badPicturesAreRefusedAndNotKept_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"poster-html", "poster-cut", "poster-huge", "length-too-long@image",
                                 "empty@image", "not-modified@image", "20-mib@image", "gzip-bomb@image"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void badPicturesAreRefusedAndNotKept()
    {
        QFETCH(const QString, behaviour);
        m_standIn->select(behaviour);
        const auto picture = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(picture->came());
        QVERIFY(!**picture);
        m_standIn->clearBehaviours();
        const auto again = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(again->came());
        QVERIFY(**again);
    }

    void badAnswersGiveTheirSentence_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, Kind kind) {
            QTest::newRow(name) << QString::fromLatin1(name) << static_cast<int>(kind);
        };
        row("film-key-refused", Kind::KeyRefused);
        row("film-not-found", Kind::BadAnswer);
        row("down@find", Kind::Unavailable);
        row("html@find", Kind::BadAnswer);
        row("null@find", Kind::BadAnswer);
        row("array@find", Kind::BadAnswer);
        row("cut@find", Kind::BadAnswer);
        row("empty@find", Kind::BadAnswer);
        row("no-content@find", Kind::BadAnswer);
        row("sign-in-page@find", Kind::BadAnswer);
        row("20-mib@find", Kind::BadAnswer);
        row("length-too-long@find", Kind::Unavailable);
    }
    void badAnswersGiveTheirSentence()
    {
        QFETCH(const QString, behaviour);
        m_standIn->select(behaviour);
        const auto found = find(u"tt9000002"_s);
        QTRY_VERIFY(found->came());
        QVERIFY(!**found);
        QTEST(static_cast<int>(kindIn(*found)), "kind");
        QVERIFY(!(*found)->error().detail.contains(QString::fromLatin1(FilmStandIn::Token)));
    }

    void tooFastIsWaitedFor()
    {
        m_standIn->select(u"film-too-fast"_s);
        const auto found = find(u"tt9000002"_s);
        QTRY_VERIFY(found->came());
        QVERIFY(**found);
        QCOMPARE(m_standIn->main().requests().size(), 2);
    }

    void showThatFailsIsAnError()
    {
        m_standIn->select(u"html@show"_s);
        const auto found = find(u"tt9000011"_s);
        QTRY_VERIFY(found->came());
        QVERIFY(!**found);
    }

    void answersAreKept()
    {
        const auto first = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        restart();
        const auto second = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QVERIFY(**second);
        QCOMPARE(m_standIn->main().requests().size(), 2); // find and configuration, once
        QCOMPARE(m_standIn->images().requests().size(), 1);
    }

    void staleAnswersAreAskedAboutAgain()
    {
        const auto first = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        pass(31 * 24h);
        const auto second = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QVERIFY(**second);
        QVERIFY(!m_standIn->images().requests().constLast().header("If-None-Match").isEmpty());
        // "Not changed" makes it fresh once more.
        pass(20 * 24h);
        const auto third = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(third->came());
        QCOMPARE(m_standIn->images().requests().size(), 2);
    }

    void serversLifetimeIsObeyed()
    {
        const auto first = find(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        pass(59min);
        const auto second = find(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QCOMPARE(m_standIn->main().requests().size(), 1);
        pass(2min);
        const auto third = find(u"tt9000002"_s);
        QTRY_VERIFY(third->came());
        QCOMPARE(m_standIn->main().requests().size(), 2);
    }

    void oldAnswersHelpWhenNobodyAnswers()
    {
        const auto first = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        pass(60 * 24h);
        m_standIn->stop();
        const auto second = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QVERIFY(**second);
    }

    void nothingIsKeptLongerThanTheTermsAllow()
    {
        const auto first = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        pass(181 * 24h);
        m_standIn->stop();
        const auto second = find(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QCOMPARE(kindIn(*second), Kind::Unavailable);
    }

    void emptiedCacheAsksAgain()
    {
        const auto first = find(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        m_films->emptyCache();
        const auto second = find(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QCOMPARE(m_standIn->main().requests().size(), 2);
    }

    void otherLanguagesAreOtherAnswers()
    {
        const auto first = find(u"tt9000002"_s);
        QTRY_VERIFY(first->came());
        m_films->preferredLanguage = u"de"_s;
        const auto second = find(u"tt9000002"_s);
        QTRY_VERIFY(second->came());
        QCOMPARE(m_standIn->main().requests().size(), 2);
    }

    void shortKeysWorkToo()
    {
        m_settings.key = QString::fromLatin1(FilmStandIn::Key);
        restart();
        const auto picture = posterOf(u"tt9000002"_s);
        QTRY_VERIFY(picture->came());
        QVERIFY(**picture);
        for (const QFileInfo &file : QDir(m_sandbox.path(u"films"_s)).entryInfoList(QDir::Files)) {
            QFile kept(file.filePath());
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QVERIFY(!kept.readAll().contains(FilmStandIn::Key));
        }
    }

    void withoutAKeyNothingIsAsked()
    {
        m_settings.key.clear();
        restart();
        const auto found = find(u"tt9000002"_s);
        QTRY_VERIFY(found->came());
        QCOMPARE(kindIn(*found), Kind::KeyRefused);
        QCOMPARE(m_standIn->main().requests().size(), 0);
    }

    void twoPicturesAtATime()
    {
        const auto found = find(u"tt9000002"_s);
        QTRY_VERIFY(found->came());
        m_standIn->select(u"silent@image"_s);
        QList<std::shared_ptr<Caught<QImage>>> pictures;
        for (const char *path : {"/a.jpg", "/b.jpg", "/c.jpg", "/d.jpg"})
            pictures += image({QVariantMap{{u"poster"_s, QString::fromLatin1(path)}}});
        // Time stands still while one is on the wire; these seconds are for the rate.
        QTRY_COMPARE(m_standIn->images().requests().size(), 1);
        m_clock->advance(2s);
        QTRY_COMPARE(m_standIn->images().requests().size(), 2);
        m_clock->advance(2s);
        QCOMPARE(m_clock->pending().size(), 4); // the limits of two requests and nothing else
        m_standIn->clearBehaviours();
        m_clock->advance(20s);
        for (const auto &picture : pictures) {
            QTRY_VERIFY(picture->came());
            QVERIFY(**picture);
        }
    }

    void serviceDyingDuringAPosterIsSaid()
    {
        m_standIn->select(u"drip@image"_s);
        const auto picture = posterOf(u"tt9000002"_s);
        QTRY_COMPARE(m_standIn->images().requests().size(), 1);
        m_standIn->drip();
        m_standIn->stop();
        QTRY_VERIFY(picture->came());
        QCOMPARE(kindIn(*picture), Kind::Unavailable);
    }

    void databaseMayGoWhileItAsks()
    {
        const auto found = find(u"tt9000002"_s);
        const auto picture = image({QVariantMap{{u"poster"_s, u"/a.jpg"_s}}});
        QTRY_VERIFY(!m_standIn->main().requests().isEmpty());
        m_films.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!picture->came());
    }

private:
    void restart()
    {
        m_films = std::make_unique<FilmDatabase>(*m_clock, m_settings, m_sandbox.path(u"films"_s),
                                                 [this] { return m_ratio; });
        m_films->preferredLanguage = u"en"_s;
    }

    std::shared_ptr<Caught<FindResult>> find(const QString &id)
    {
        auto caught = std::make_shared<Caught<FindResult>>();
        m_films->findExternally(id, ExternalSource::imdb, [caught](const Result<FindResult> &result) {
            QVERIFY(MainQueue::isMainThread());
            caught->completion()(result);
        });
        return caught;
    }

    std::shared_ptr<Caught<QImage>> image(const TmdbItem &item)
    {
        auto caught = std::make_shared<Caught<QImage>>();
        m_films->fetchImage(item, ImageKind::Poster, PosterPoints,
                            [caught](const Result<QImage> &result) { caught->completion()(result); });
        return caught;
    }

    /// The poster of a film that is found first.
    std::shared_ptr<Caught<QImage>> posterOf(const QString &id)
    {
        auto caught = std::make_shared<Caught<QImage>>();
        m_films->findExternally(id, ExternalSource::imdb, [this, caught](const Result<FindResult> &found) {
            QVERIFY2(found, found ? "" : qPrintable(found.error().detail));
            m_films->fetchImage(found->movieResults.value(0), ImageKind::Poster, PosterPoints,
                                [caught](const Result<QImage> &result) { caught->completion()(result); });
        });
        return caught;
    }

    void pass(std::chrono::seconds time) { m_clock->setDate(m_clock->date().addDuration(time)); }

    Sandbox m_sandbox;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<StandIn> m_standIn;
    FilmSettings m_settings;
    qreal m_ratio = 1;
    std::unique_ptr<FilmDatabase> m_films;
};

QTEST_MAIN(FilmDatabaseTest)
#include "FilmDatabaseTest.moc"
