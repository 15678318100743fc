#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueDatabase.h>
#include <tests/support/TestMain.h>

#include <QTest>

namespace
{
const QString Hash = QStringLiteral("00112233445566ff");
constexpr quint64 Size = 5'000'000'000;

QStringList releases(const Result<QList<CatalogueEntry>> &entries)
{
    QStringList names;
    if (!entries)
        return {QStringLiteral("error: ") + entries.error().detail};
    for (const CatalogueEntry &entry : *entries)
        names += entry.subtitle.subFileName;
    names.sort();
    return names;
}
} // namespace

class CatalogueDatabaseTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueErrors m_errors;
    QString m_path;

    Result<CatalogueDatabase> open() const { return CatalogueDatabase::open(m_path, m_errors); }

    QStringList textSearch(const char *text, const char *language = "eng") const
    {
        const Result<CatalogueDatabase> database = open();
        if (!database)
            return {QStringLiteral("not opened")};
        return releases(database->entriesForText(QString::fromUtf8(text), QString::fromLatin1(language)));
    }

private Q_SLOTS:
    void initTestCase()
    {
        CatalogueFixture fixture(m_sandbox, QStringLiteral("catalogue.sqlite"));
        fixture.film({QStringLiteral("Harbour Lights"), QStringLiteral("Les Feux à l'Été")}, 2019)
            .withImdb(990019001)
            .subtitle(QStringLiteral("Lights.1080p"), 10)
            .madeFor(Hash, Size)
            .subtitle(QStringLiteral("Lights.720p"), 900)
            .subtitle(QStringLiteral("Lights.de"), 5, "ger");
        fixture.film({QStringLiteral("Harbour Lights")}, 1954).subtitle(QStringLiteral("OldLights"), 7);
        fixture.film({QStringLiteral("Harbour")}, 2001).subtitle(QStringLiteral("Harbour"), 1);
        fixture.film({QStringLiteral("1917 Below")}, 2003).subtitle(QStringLiteral("Below"), 1);
        fixture.film({QStringLiteral("港の灯")}, 2010).subtitle(QStringLiteral("Minato"), 1);
        for (int episode = 1; episode <= 3; ++episode) {
            fixture.film({QStringLiteral("Lamplighters of Brack")}, 2020, 1, episode)
                .subtitle(QStringLiteral("Brack.E%1").arg(episode), 1);
        }
        fixture.write();
        m_path = fixture.path();
    }

    void videoIsFoundBySizeAndHash()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const Result<QList<CatalogueEntry>> entries =
            database->entriesForVideo(Size, Hash.toUpper(), QStringLiteral("eng"));
        QCOMPARE(releases(entries),
                 QStringList({QStringLiteral("Lights.1080p"), QStringLiteral("Lights.720p")}));
        for (const CatalogueEntry &entry : *entries)
            QCOMPARE(entry.subtitle.matchesHash,
                     entry.subtitle.subFileName == QStringLiteral("Lights.1080p"));
    }

    void videoGivesTheFilmsOtherLanguagesToo()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const Result<QList<CatalogueEntry>> entries =
            database->entriesForVideo(Size, Hash, QStringLiteral("ger"));
        QCOMPARE(releases(entries), QStringList(QStringLiteral("Lights.de")));
        QVERIFY(!entries->first().subtitle.matchesHash);
    }

    void otherSizeOrHashIsAnotherVideo()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        QCOMPARE(releases(database->entriesForVideo(Size + 1, Hash, QString())), QStringList());
        QCOMPARE(releases(database->entriesForVideo(Size, QStringLiteral("0"), QString())), QStringList());
        const quint64 beyondSigned = std::numeric_limits<quint64>::max();
        QCOMPARE(releases(database->entriesForVideo(beyondSigned, Hash, QString())), QStringList());
    }

    void textFindsTitles_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("found");
        const QStringList lights = {QStringLiteral("Lights.1080p"), QStringLiteral("Lights.720p")};
        const QStringList bothFilms = lights + QStringList(QStringLiteral("OldLights"));
        const QStringList brack = {QStringLiteral("Brack.E1"), QStringLiteral("Brack.E2"),
                                   QStringLiteral("Brack.E3")};
        const auto row = [](const char *text, const QStringList &found) {
            QTest::newRow(text) << QString::fromUtf8(text) << found;
        };
        row("harbour lights", bothFilms);
        row("LIGHTS harbour", bothFilms);
        row("harb lig", bothFilms);
        row("harbour lights 2019", lights);
        row("harbour lights 1954", {QStringLiteral("OldLights")});
        row("harbour lights 1999", bothFilms);
        row("Harbour.Lights.2019.1080p.BluRay.x264-GRP.mkv", lights);
        row("harbour lights behind the scenes", bothFilms);
        row("the harbour of lost souls", {});
        row("les feux a l'ete", lights);
        row("LES FEUX À L’ÉTÉ", lights);
        row("1917 below", {QStringLiteral("Below")});
        row("灯 港", {QStringLiteral("Minato")});
        row("lamplighters of brack", brack);
        row("brack s01e02", {QStringLiteral("Brack.E2")});
        row("Lamplighters.of.Brack.S01E03.720p.HDTV", {QStringLiteral("Brack.E3")});
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
        QFETCH(QString, text);
        QFETCH(QStringList, found);
        QStringList sorted = found;
        sorted.sort();
        QCOMPARE(textSearch(text.toUtf8().constData()), sorted);
    }

    void anyTitleFindsTheFilmUnderItsMainOne()
    {
        const Result<CatalogueDatabase> database = open();
        for (const char *text : {"harbour lights", "les feux a l'ete"}) {
            const auto entries = database->entriesForText(QString::fromUtf8(text), QStringLiteral("ger"));
            QCOMPARE(releases(entries), QStringList(QStringLiteral("Lights.de")));
            QCOMPARE(entries->first().subtitle.title, QStringLiteral("Harbour Lights"));
        }
    }

    void hugeTextIsBounded()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const QString text = QStringLiteral("harbour ").repeated(8192);
        QVERIFY(database->entriesForText(text, QStringLiteral("eng")));
    }

    void languageDecides()
    {
        QCOMPARE(textSearch("harbour lights", "ger"), QStringList(QStringLiteral("Lights.de")));
        QCOMPARE(textSearch("harbour lights", "fre"), QStringList());
        QCOMPARE(textSearch("harbour lights 2019", "").size(), 3);
    }

    void entryTellsWhatIsKnown()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const Result<QList<CatalogueEntry>> entries =
            database->entriesForText(QStringLiteral("brack s01e02"), QStringLiteral("eng"));
        QVERIFY(entries && entries->size() == 1);
        const Subtitle &subtitle = entries->first().subtitle;
        QCOMPARE(subtitle.title, QStringLiteral("Lamplighters of Brack"));
        QCOMPARE(subtitle.year, std::optional(2020));
        QCOMPARE(subtitle.season, std::optional(1));
        QCOMPARE(subtitle.episode, std::optional(2));
        QCOMPARE(subtitle.subFormat, QStringLiteral("srt"));
        QCOMPARE(subtitle.subLanguageID, QStringLiteral("eng"));
        QCOMPARE(subtitle.downloads, std::optional<qint64>(1));
        QVERIFY(!subtitle.imdbID);
        QVERIFY(!subtitle.framesPerSecond);
    }

    void filmIsFoundByImdb()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const Result<std::optional<CatalogueFilm>> film = database->filmByImdb(990019001);
        QVERIFY(film && *film);
        QVERIFY(!(*film)->isSeries);
        const Result<std::optional<CatalogueFilm>> none = database->filmByImdb(1);
        QVERIFY(none && !*none);
    }

    void missingRowsAreNoError()
    {
        const Result<CatalogueDatabase> database = open();
        QVERIFY(database);
        const Result<std::optional<CatalogueFile>> file = database->file(999);
        QVERIFY(file && !*file);
        const Result<QByteArray> poster = database->poster(999);
        QVERIFY(poster && poster->isEmpty());
    }
};

PLOVENDIX_TEST(CatalogueDatabaseTest)
#include "CatalogueDatabaseTest.moc"
