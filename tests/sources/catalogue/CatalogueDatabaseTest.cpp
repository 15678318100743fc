#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueDatabase.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

/// What the searches of one catalogue find, and what its rows say.
class CatalogueDatabaseTest : public QObject
{
    Q_OBJECT

    using Database = std::optional<Result<CatalogueDatabase>>;

    Sandbox m_sandbox;
    Database m_small;
    Database m_large; // titles with more subtitles than a search reads

    static QStringList releases(const Result<QList<CatalogueEntry>> &entries)
    {
        if (!entries)
            return {u"error: "_s + entries.error().detail};
        QStringList names;
        for (const CatalogueEntry &entry : *entries)
            names += entry.subtitle.subFileName;
        return names;
    }
    static QStringList found(const Database &database, const QString &text,
                             const QString &language = u"eng"_s)
    {
        return releases((*database)->entriesForText(text, language));
    }
    Result<QList<CatalogueEntry>> video(quint64 size, const QString &hash, const QString &language) const
    {
        return (*m_small)->entriesForVideo(size, hash, language);
    }

    static void makeLarge(CatalogueFixture &&fixture)
    {
        for (int episode = 1; episode <= 60; ++episode) {
            fixture.film({u"Lamplighters"_s}, 2020, 1, episode);
            for (int release = 0; release < CatalogueQueries::MaxEntries / 20; ++release)
                fixture.subtitle(u"Lamplighters.E%1.%2"_s.arg(episode).arg(release), 1000 - episode);
        }
        fixture.film({u"Harbour"_s}, 1990);
        for (int release = 0; release <= CatalogueQueries::MaxEntries; ++release)
            fixture.subtitle(u"Harbour.1990.%1"_s.arg(release), 1000);
        fixture.film({u"Harbour"_s}, 2019).subtitle(u"Harbour.2019"_s, 1);
        const auto addMany = [&](int count, const QString &title) {
            for (int i = 0; i < count; ++i)
                fixture.film({title.arg(i)}, 2000).subtitle(title.arg(i), 900);
        };
        addMany(300, u"Ferrying Ferryman Ferrymen %1"_s);
        fixture.film({u"Ferry"_s}, 2001).subtitle(u"Ferry.2001"_s, 1);
        addMany(700, u"Lantern for the Keeper %1"_s);
        fixture.film({u"Keeper Lantern"_s}, 2002).subtitle(u"Keeper.Lantern.2002"_s, 1);
        addMany(250, u"The Of %1"_s);
        fixture.film({u"The Drawbridge with a Name That Is Long"_s}, 2003).subtitle(u"Drawbridge.2003"_s, 1);
        fixture.write();
    }

private Q_SLOTS:
    void initTestCase()
    {
        CatalogueFixture fixture(m_sandbox, u"small.sqlite"_s);
        fixture.film({u"Harbour Lights"_s, u"Les Feux à l'Été"_s}, 2019)
            .withImdb(990019001)
            .subtitle(u"Lights.1080p"_s, 10)
            .madeFor(Hash, Size)
            .subtitle(u"Lights.720p"_s, 900)
            .subtitle(u"Lights.de"_s, 5, "ger");
        fixture.film({u"Harbour Lights"_s}, 1954).subtitle(u"OldLights"_s, 7);
        fixture.film({u"Harbour"_s}, 2001).subtitle(u"Harbour"_s, 1);
        fixture.film({u"1917 Below"_s}, 2003).subtitle(u"Below"_s, 1);
        fixture.film({u"港の灯"_s}, 2010).subtitle(u"Minato"_s, 1);
        for (int episode = 1; episode <= 3; ++episode)
            fixture.film({u"Lamplighters of Brack"_s}, 2020, 1, episode)
                .subtitle(u"Brack.E%1"_s.arg(episode), 1);
        fixture.write();
        makeLarge(CatalogueFixture(m_sandbox, u"large.sqlite"_s));
        m_small.emplace(CatalogueDatabase::open(fixture.path(), CatalogueErrors()));
        m_large.emplace(CatalogueDatabase::open(m_sandbox.path(u"large.sqlite"_s), CatalogueErrors()));
        QVERIFY(*m_small && *m_large);
    }

    void videoIsFoundBySizeAndHash()
    {
        const auto entries = video(Size, Hash.toUpper(), u"eng"_s);
        QCOMPARE(releases(entries), QStringList({u"Lights.1080p"_s, u"Lights.720p"_s}));
        QVERIFY(entries->first().subtitle.matchesHash && !entries->last().subtitle.matchesHash);
        const auto others = video(Size, Hash, u"ger"_s);
        QCOMPARE(releases(others), QStringList(u"Lights.de"_s));
        QVERIFY(!others->first().subtitle.matchesHash);
    }

    void otherSizeOrHashIsAnotherVideo()
    {
        QCOMPARE(releases(video(Size + 1, Hash, {})), QStringList());
        QCOMPARE(releases(video(Size, u"0"_s, {})), QStringList());
        QCOMPARE(releases(video(std::numeric_limits<quint64>::max(), Hash, {})), QStringList());
    }

    void textFindsTitles_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("names");
        const QStringList lights{u"Lights.1080p"_s, u"Lights.720p"_s};
        const QStringList bothFilms = lights + QStringList(u"OldLights"_s);
        const QStringList brack{u"Brack.E1"_s, u"Brack.E2"_s, u"Brack.E3"_s};
        const auto row = [](const char *text, const QStringList &names) {
            QTest::newRow(text) << QString::fromUtf8(text) << names;
        };
        row("harbour lights", bothFilms);
        row("LIGHTS harbour", bothFilms);
        row("harb lig", bothFilms);
        row("harbour lights 2019", lights);
        row("harbour lights 1954", {u"OldLights"_s});
        row("harbour lights 1999", bothFilms);
        row("Harbour.Lights.2019.1080p.BluRay.x264-GRP.mkv", lights);
        row("harbour lights behind the scenes", bothFilms);
        row("the harbour of lost souls", {});
        row("les feux a l'ete", lights);
        row("LES FEUX À L’ÉTÉ", lights);
        row("1917 below", {u"Below"_s});
        row("灯 港", {u"Minato"_s});
        row("lamplighters of brack", brack);
        row("brack s01e02", {u"Brack.E2"_s});
        row("Lamplighters.of.Brack.S01E03.720p.HDTV", {u"Brack.E3"_s});
        row("lamplighters of brack s01e09", {});
        row("nothing like this", {});
        row("", {});
        row("   ", {});
        row("\"*", {});
        row("harbour\" OR 1", {});
        row("NEAR(harbour lights)", bothFilms);
    }
    void textFindsTitles()
    {
        QFETCH(const QString, text);
        QStringList sorted = found(m_small, text);
        sorted.sort();
        QTEST(sorted, "names");
    }

    void anyTitleFindsTheFilmUnderItsMainOne()
    {
        for (const QString &text : {u"harbour lights"_s, u"les feux a l'ete"_s}) {
            const auto entries = (*m_small)->entriesForText(text, u"ger"_s);
            QCOMPARE(releases(entries), QStringList(u"Lights.de"_s));
            QCOMPARE(entries->first().subtitle.title, u"Harbour Lights"_s);
        }
    }

    void hugeTextIsBounded() { QVERIFY((*m_small)->entriesForText(u"harbour "_s.repeated(8192), u"eng"_s)); }

    void languageDecides()
    {
        QCOMPARE(found(m_small, u"harbour lights"_s, u"ger"_s), QStringList(u"Lights.de"_s));
        QCOMPARE(found(m_small, u"harbour lights"_s, u"fre"_s), QStringList());
        QCOMPARE(found(m_small, u"harbour lights 2019"_s, {}).size(), 3);
    }

    void entryTellsWhatIsKnown()
    {
        const auto entries = (*m_small)->entriesForText(u"brack s01e02"_s, u"eng"_s);
        QVERIFY(entries && entries->size() == 1);
        const Subtitle &subtitle = entries->first().subtitle;
        QCOMPARE(subtitle.title, u"Lamplighters of Brack"_s);
        QCOMPARE(subtitle.year, std::optional(2020));
        QCOMPARE(subtitle.season, std::optional(1));
        QCOMPARE(subtitle.episode, std::optional(2));
        QCOMPARE(subtitle.subFormat, u"srt"_s);
        QCOMPARE(subtitle.subLanguageID, u"eng"_s);
        QCOMPARE(subtitle.downloads, std::optional<qint64>(1));
        QVERIFY(!subtitle.imdbID && !subtitle.framesPerSecond);
    }

    void missingRowsAreNoError()
    {
        const auto film = (*m_small)->filmByImdb(1);
        QVERIFY(film && !*film);
        const auto file = (*m_small)->file(999);
        QVERIFY(file && !*file);
        const auto poster = (*m_small)->poster(999);
        QVERIFY(poster && poster->isEmpty());
    }

    void wantedEpisodeIsAmongThoseThatAreRead()
    {
        const QStringList names = found(m_large, u"Lamplighters S01E60"_s);
        QCOMPARE(names.size(), CatalogueQueries::MaxEntries / 20);
        QCOMPARE(names.filter(u"Lamplighters.E60."_s), names);
        QCOMPARE(found(m_large, u"Lamplighters S01E61"_s), QStringList());
        QCOMPARE(found(m_large, u"Harbour 2019"_s), QStringList(u"Harbour.2019"_s));
        QCOMPARE(found(m_large, u"harbour"_s).size(), CatalogueQueries::MaxEntries);
    }

    void closestTitleIsFirstAmongMany_data()
    {
        QTest::addColumn<QString>("first");
        QTest::newRow("ferry") << u"Ferry.2001"_s; // many begin with it
        QTest::newRow("keeper lantern") << u"Keeper.Lantern.2002"_s;
        QTest::newRow("keeper lant") << u"Keeper.Lantern.2002"_s;
        QTest::newRow("harbour keeper lantern") << u"Keeper.Lantern.2002"_s; // one word too many
        QTest::newRow("of the drawbridge") << u"Drawbridge.2003"_s;          // two frequent words
    }
    void closestTitleIsFirstAmongMany()
    {
        const QStringList names = found(m_large, QString::fromLatin1(QTest::currentDataTag()));
        QTEST(names.value(0), "first");
        QVERIFY(names.size() >= 100);
    }

    void halfTheWordsFindOnlySoMany() { QCOMPARE(found(m_large, u"of the drawbridge"_s).size(), 100); }
};

PLOVENDIX_TEST(CatalogueDatabaseTest)
#include "CatalogueDatabaseTest.moc"
