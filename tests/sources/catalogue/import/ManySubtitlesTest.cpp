#include <tests/sources/catalogue/CatalogueFixture.h>

#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/CatalogueQueries.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// Titles with more subtitles than a search reads.
class ManySubtitlesTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    QString m_path;

    QStringList releases(const QString &text) const
    {
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, CatalogueErrors());
        const Result<QList<CatalogueEntry>> entries = database->entriesForText(text, u"eng"_s);
        QStringList names;
        for (const CatalogueEntry &entry : *entries)
            names += entry.subtitle.subFileName;
        return names;
    }

private Q_SLOTS:
    void initTestCase()
    {
        constexpr int Episodes = 60;
        constexpr int Releases = CatalogueQueries::MaxEntries / 20;
        CatalogueFixture fixture(m_sandbox, u"many.sqlite"_s);
        for (int episode = 1; episode <= Episodes; ++episode) {
            fixture.film({u"Lamplighters"_s}, 2020, 1, episode);
            for (int release = 0; release < Releases; ++release)
                fixture.subtitle(u"Lamplighters.E%1.%2"_s.arg(episode).arg(release), 1000 - episode);
        }
        fixture.film({u"Harbour"_s}, 1990);
        for (int release = 0; release <= CatalogueQueries::MaxEntries; ++release)
            fixture.subtitle(u"Harbour.1990.%1"_s.arg(release), 1000);
        fixture.film({u"Harbour"_s}, 2019).subtitle(u"Harbour.2019"_s, 1);
        constexpr int LongerTitles = 300;
        for (int i = 0; i < LongerTitles; ++i)
            fixture.film({u"Ferrying Ferryman Ferrymen %1"_s.arg(i)}, 2000)
                .subtitle(u"Longer.%1"_s.arg(i), 900);
        fixture.film({u"Ferry"_s}, 2001).subtitle(u"Ferry.2001"_s, 1);
        constexpr int TitlesOfBothWords = 700;
        for (int i = 0; i < TitlesOfBothWords; ++i)
            fixture.film({u"Lantern for the Keeper %1"_s.arg(i)}, 2000).subtitle(u"Both.%1"_s.arg(i), 900);
        fixture.film({u"Keeper Lantern"_s}, 2002).subtitle(u"Keeper.Lantern.2002"_s, 1);
        constexpr int TitlesOfFrequentWords = 250;
        for (int i = 0; i < TitlesOfFrequentWords; ++i)
            fixture.film({u"The Of %1"_s.arg(i)}, 2000).subtitle(u"Frequent.%1"_s.arg(i), 900);
        fixture.film({u"The Drawbridge with a Name That Is Long"_s}, 2003).subtitle(u"Drawbridge.2003"_s, 1);
        fixture.write();
        m_path = fixture.path();
    }

    void lastEpisodeIsAmongThoseThatAreRead()
    {
        const QStringList found = releases(u"Lamplighters S01E60"_s);
        QCOMPARE(found.size(), CatalogueQueries::MaxEntries / 20);
        for (const QString &release : found)
            QVERIFY2(release.startsWith(u"Lamplighters.E60."_s), qPrintable(release));
    }

    void episodeThatIsNotThereGivesNoOther() { QCOMPARE(releases(u"Lamplighters S01E61"_s), QStringList()); }

    void theYearsOwnFilmIsAmongThem()
    {
        QCOMPARE(releases(u"Harbour 2019"_s), QStringList(u"Harbour.2019"_s));
    }

    void titleOfJustThisWordComesBeforeAllThatBeginWithIt()
    {
        const QStringList found = releases(u"ferry"_s);
        QCOMPARE(found.value(0), u"Ferry.2001"_s);
        QVERIFY(found.size() > 100);
    }

    void titleOfJustTheseWordsComesBeforeAllThatHaveThem()
    {
        QCOMPARE(releases(u"keeper lantern"_s).value(0), u"Keeper.Lantern.2002"_s);
        QCOMPARE(releases(u"keeper lant"_s).value(0), u"Keeper.Lantern.2002"_s);
    }

    void oneWrongWordOfThreeIsForgiven()
    {
        QCOMPARE(releases(u"harbour keeper lantern"_s).value(0), u"Keeper.Lantern.2002"_s);
    }

    void rareWordCountsMoreThanTheFrequentOnes()
    {
        const QStringList found = releases(u"of the drawbridge"_s);
        QCOMPARE(found.value(0), u"Drawbridge.2003"_s);
        QCOMPARE(found.size(), 100);
    }

    void withoutFactsThereAreAsManyAsAreRead()
    {
        QCOMPARE(releases(u"harbour"_s).size(), CatalogueQueries::MaxEntries);
    }
};

PLOVENDIX_TEST(ManySubtitlesTest)
#include "ManySubtitlesTest.moc"
