#include <sources/catalogue/import/SubtitleName.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// What the names of subtitle files say.
class SubtitleNameTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox; // its bundle has the language codes

private Q_SLOTS:
    void pathSaysReleaseLanguageAndMarks_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("release");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("marks"); // h: hard of hearing, f: foreign parts
        const auto row = [](const char *path, const char *release, const char *language, const char *marks) {
            QTest::newRow(path) << QString::fromUtf8(path) << QString::fromUtf8(release)
                                << QString::fromLatin1(language) << QString::fromLatin1(marks);
        };
        row("a/Harbour.Lights.2019.1080p.srt", "Harbour.Lights.2019.1080p", "", "");
        row("a/Harbour.Lights.2019.en.srt", "Harbour.Lights.2019", "eng", "");
        row("a/Harbour.Lights.2019.GER.srt", "Harbour.Lights.2019", "ger", "");
        row("a/Harbour.Lights.2019.pt-BR.srt", "Harbour.Lights.2019", "pob", "");
        row("a/Harbour.Lights.2019.French.srt", "Harbour.Lights.2019", "fre", "");
        row("a/Harbour.Lights.2019.en.sdh.srt", "Harbour.Lights.2019", "eng", "h");
        row("a/Harbour.Lights.2019.en.hi.srt", "Harbour.Lights.2019", "eng", "h");
        row("a/Harbour.Lights.2019.hi.srt", "Harbour.Lights.2019", "hin", "");
        row("a/Harbour.Lights.2019.de.forced.default.srt", "Harbour.Lights.2019", "ger", "f");
        row("a/Harbour.Lights.2019.TS.srt", "Harbour.Lights.2019.TS", "", "");
        row("a/Harbour.Lights.2019.x264-abc.srt", "Harbour.Lights.2019.x264-abc", "", "");
        row("a/Harbour.Lights.2019.en.srt.gz", "Harbour.Lights.2019", "eng", "");
        row("Harbour Lights 2019/Subs/2_English.srt", "Harbour Lights 2019", "eng", "");
        row("Harbour Lights 2019/Subs/ger.srt", "Harbour Lights 2019", "ger", "");
        row("Harbour Lights 2019/German/Harbour Lights.srt", "Harbour Lights", "ger", "");
        row("Harbour Lights/S01E02.es.srt", "Harbour Lights S01E02", "spa", "");
        row("Harbour.Lights.2019.zip/subs\\it.srt", "Harbour.Lights.2019.zip", "ita", "");
    }

    void pathSaysReleaseLanguageAndMarks()
    {
        QFETCH(QString, path);
        const SubtitleName said = subtitleName(path);
        QTEST(said.release, "release");
        QTEST(said.language, "language");
        QTEST((said.hearingImpaired ? u"h"_s : QString()) + (said.foreignPartsOnly ? u"f"_s : QString()),
              "marks");
    }

    void videoMayBeNamedWithOrWithoutTheMarks()
    {
        QCOMPARE(subtitleName(u"a/Lights.en.forced.srt"_s).videoNames,
                 QStringList({u"Lights.en.forced"_s, u"Lights.en"_s, u"Lights"_s}));
    }

    void releaseSaysWhichFilmItIs()
    {
        const FilmRecord film = filmOfRelease(u"Harbour.Lights.2019.1080p"_s);
        QCOMPARE(film.titles, QStringList(u"Harbour Lights"_s));
        QCOMPARE(film.year, 2019);
        QVERIFY(!film.isSeries);
        const FilmRecord episode = filmOfRelease(u"Harbour Lights S02E05"_s);
        QCOMPARE(episode.season, 2);
        QCOMPARE(episode.episode, 5);
        QVERIFY(episode.isSeries);
    }

    void nameWithoutATitleIsTheTitleItself()
    {
        QCOMPARE(filmOfRelease(u"---"_s).titles, QStringList(u"---"_s));
    }

    void onlySubtitleFilesAreTaken_data()
    {
        QTest::addColumn<bool>("isOne");
        QTest::newRow("a.srt") << true;
        QTest::newRow("a.SRT") << true;
        QTest::newRow("a.ass.gz") << true;
        QTest::newRow("a.mkv") << false;
        QTest::newRow("a.gz") << false;
        QTest::newRow(".srt") << false;
        QTest::newRow("srt") << false;
    }

    void onlySubtitleFilesAreTaken()
    {
        QTEST(isSubtitleFileName(QString::fromLatin1(QTest::currentDataTag())), "isOne");
    }
};

PLOVENDIX_TEST(SubtitleNameTest)
#include "SubtitleNameTest.moc"
