#include <base/FileManager.h>
#include <media/names/FileNameParser.h>
#include <media/names/NameTokens.h>
#include <tests/support/TestMain.h>
#include <tests/support/Work.h>

#include <QTest>

#include <algorithm>

namespace
{
constexpr int None = -1;

std::optional<int> optional(int value)
{
    return value == None ? std::nullopt : std::optional(value);
}
} // namespace

class FileNameParserTest : public QObject
{
    Q_OBJECT

    static void expectTameComponents(const QString &name)
    {
        const VideoFileComponents said = parseVideoName(name);
        QVERIFY(said.title.size() <= NameTokens::MaxCharacters);
        QVERIFY(said.searchString.size() <= NameTokens::MaxCharacters + 16);
        QVERIFY(!said.searchString.contains(QLatin1Char('\n')));
    }

private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("year");
        QTest::addColumn<int>("season");
        QTest::addColumn<int>("episode");
        const auto row = [](const char *name, const char *title, int year = None, int season = None,
                            int episode = None) {
            QTest::newRow(name) << QString::fromUtf8(name) << QString::fromUtf8(title) << year << season
                                << episode;
        };
        row("Harbour.Lights.2019.1080p.BluRay.x264.mkv", "Harbour Lights", 2019);
        row("harbour lights 2019 [styled].ass", "harbour lights", 2019);
        row("Harbour Lights (2019) [1080p].mp4", "Harbour Lights", 2019);
        row("Harbour_Lights_[2019]_720p_WEB-DL_AAC2.0_H.264-GRP", "Harbour Lights", 2019);
        row("Harbour Lights", "Harbour Lights");
        row("The.Tin-Orchard.Extended.German.DL.2021.2160p.WEB.HEVC-GRP.mkv",
            "The Tin-Orchard Extended German DL", 2021);
        row("Tin.Orchard.EXTENDED.2021.DVDRip.XviD", "Tin Orchard", 2021);
        row("Tin.Orchard.3.German.DL.720p.BluRay.x264-GRP", "Tin Orchard 3");
        row("Night Ferry to Ostermoor CAM.avi", "Night Ferry to Ostermoor CAM");
        row("1907 (2014) [BluRay 1080p]", "1907", 2014);
        row("1931.A.Harbour.Story.1968.HDTV", "1931 A Harbour Story", 1968);
        row("12.Tin.Men.1957.mkv", "12 Tin Men", 1957);
        row("Quillmouth Radio 2016.05.23 720p WEBRip", "Quillmouth Radio", 2016);
        row("Quillmouth Radio - 23-05-2016 - 720p HDTV", "Quillmouth Radio", 2016);
        row("Quillmouth (Drama 1969) Some Actor 720p BrRip", "Quillmouth", 1969);
        row("Квилмут 2006г. BDRip 1080p.mkv", "Квилмут", 2006);
        row("www.example.com - Tin.Orchard.2008.720p.X264-GRP", "Tin Orchard", 2008);
        row("[ www.example.com ] - Brack.S07E07.720p.HDTV.X264-GRP", "Brack", None, 7, 7);

        row("Lamplighters.of.Brack.S01E02.1080p.WEB.H264-GRP.mkv", "Lamplighters of Brack", None, 1, 2);
        row("lamplighters of brack s1 e2", "lamplighters of brack", None, 1, 2);
        row("Lamplighters.of.Brack.S01.E.02.1080p", "Lamplighters of Brack", None, 1, 2);
        row("Lamplighters of Brack - S01E02E03 - The Ladder", "Lamplighters of Brack", None, 1, 2);
        row("Lamplighters of Brack (2020) - S01E02", "Lamplighters of Brack", 2020, 1, 2);
        row("Lamplighters of Brack 1x02.avi", "Lamplighters of Brack", None, 1, 2);
        row("Lamplighters of Brack - (4x03) - The Bell.mkv", "Lamplighters of Brack", None, 4, 3);
        row("Lamplighters of Brack Season 2 Episode 11", "Lamplighters of Brack", None, 2, 11);
        row("Lamplighters of Brack Season 2 S02E11 720p", "Lamplighters of Brack", None, 2, 11);
        row("Lamplighters of Brack - Temporada 1 [HDTV][Cap.105]", "Lamplighters of Brack", None, 1, 5);
        row("Lamplighters of Brack 2nd Season - 12 END [1080p]", "Lamplighters of Brack", None, 2, 12);
        row("Lamplighters.of.Brack.S03.1080p.BluRay", "Lamplighters of Brack", None, 3);
        row("Lamplighters.of.Brack.Complete.S03.DVDRip", "Lamplighters of Brack", None, 3);
        row("Lamplighters.of.Brack.Staffel.3.720p", "Lamplighters of Brack", None, 3);
        row("Lamplighters of Brack E07 HDTV", "Lamplighters of Brack", None, None, 7);
        row("Lamplighters of Brack Folge 7 HDTV", "Lamplighters of Brack", None, None, 7);
        row("Lamplighters of Brack 69. Bölüm (23.10.2023) 720p", "Lamplighters of Brack", 2023, None, 69);
        row("Lamplighters.of.Brack.2of6.HDTV", "Lamplighters of Brack", None, None, 2);
        row("Lamplighters of Brack #957 (1280x720 x264).mp4", "Lamplighters of Brack", None, None, 957);
        row("[Group] Lamplighters - 06 [720p][ABB3728A].mkv", "Lamplighters", None, None, 6);
        row("[Group]_Lamplighters_127_[1280x720].mp4", "Lamplighters", None, None, 127);
        row("[Group] Lamplighters S2 - 03v2 (540p)", "Lamplighters", None, 2, 3);
        row("[字幕组][灯火守望][第1008話][1080P][MP4]", "灯火守望", None, None, 1008);
        row("[Group][灯火守望][Lamplighters][17][AVC]", "Lamplighters", None, None, 17);
        row("Lamplighters - １５ [1080p]", "Lamplighters", None, None, 15);
        row("Lamplighters.103.HDTV-GRP", "Lamplighters", None, 1, 3);
        row("03. Lamplighters - The Bell.avi", "Lamplighters", None, None, 3);
    }

    void names()
    {
        QFETCH(QString, name);
        QFETCH(QString, title);
        QFETCH(int, year);
        QFETCH(int, season);
        QFETCH(int, episode);
        const VideoFileComponents said = parseVideoName(name);
        QCOMPARE(said.title, title);
        QVERIFY2(said.year == optional(year), qPrintable(QString::number(said.year.value_or(None))));
        QVERIFY2(said.season == optional(season), qPrintable(QString::number(said.season.value_or(None))));
        QVERIFY2(said.episode == optional(episode), qPrintable(QString::number(said.episode.value_or(None))));
    }

    void searchString_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("words");
        QTest::newRow("film") << "Harbour.Lights.2019.1080p.mkv"
                              << "Harbour Lights 2019";
        QTest::newRow("film without a year") << "Harbour.Lights.1080p.mkv"
                                             << "Harbour Lights";
        QTest::newRow("episode") << "Brack.2020.S01E02.720p.mkv"
                                 << "Brack S01E02";
        QTest::newRow("high numbers") << "Brack.S01E1002.mkv"
                                      << "Brack S01E1002";
        QTest::newRow("season") << "Brack.S01.720p.mkv"
                                << "Brack";
        QTest::newRow("title only") << "holiday.mp4"
                                    << "holiday";
        QTest::newRow("nothing of a title") << "S01E02.mkv"
                                            << "S01E02";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("extension only") << ".mkv"
                                        << "mkv";
    }

    void searchString()
    {
        QFETCH(QString, name);
        QFETCH(QString, words);
        QCOMPARE(parseVideoName(name).searchString, words);
    }

    void hostileNamesTakeAsLongAsTheyAre_data()
    {
        QTest::addColumn<QString>("part");
        for (const char *part :
             {"a",     ".",      "(",     ")",     "[1]",       "S01E01 ",       "1x",
              "2019 ", "- 01 ",  "x264 ", "第1話", "German ",   "e\u0301",       "\U0001F600",
              "1",     "[",      "]",     "[[]",   "1x1x1x1x1", "\u0301",        "1.",
              "1-",    "01.02.", "2019-", "s1",    "AKA ",      "the complete ", "Abcd1x02",
              "to 1 "})
            QTest::newRow(part) << QString::fromUtf8(part);
    }

    void hostileNamesTakeAsLongAsTheyAre()
    {
        QFETCH(QString, part);
        constexpr qsizetype Length = 65536;
        const QString name = part.repeated(Length / part.size());
        expectTameComponents(name);
        const QString quarter = name.left(Length / 4);
        QVERIFY(growsLikeItsInput([&] { parseVideoName(quarter); }, [&] { parseVideoName(name); }));
    }

    void hostileSignsGiveAnAnswer_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("line breaks") << QStringLiteral("Harbour\nLights\r\n2019\0.mkv");
        QTest::newRow("half a surrogate pair") << QString(QChar(0xd83d)) + QStringLiteral(" Lights 2019");
        QTest::newRow("control characters") << QStringLiteral("\x01\x02\x7f\u202e\u2028");
    }

    void hostileSignsGiveAnAnswer()
    {
        QFETCH(QString, name);
        expectTameComponents(name);
    }

    void urlSpeaksByItsLastComponentOnly()
    {
        const VideoFileComponents said = videoFileComponents(
            QUrl::fromLocalFile(QStringLiteral("/films/Brack S03E04/Harbour.Lights.2019.mkv")));
        QCOMPARE(said.searchString, QStringLiteral("Harbour Lights 2019"));
        QVERIFY(!said.season);
    }

    void bytesThatAreNotUtf8AreReadAroundThem()
    {
        const VideoFileComponents said =
            videoFileComponents(FileManager::urlFromFileSystemPath("/films/Caf\xe9.Lights.2019.720p.mkv"));
        QCOMPARE(said.year, std::optional(2019));
        QVERIFY(said.title.endsWith(QStringLiteral("Lights")));
    }
};

PLOVENDIX_TEST(FileNameParserTest)
#include "FileNameParserTest.moc"
