#include <services/video/FileNameParser.h>

#include <QTest>

#include <span>

namespace
{
constexpr int None = -1;

struct Row
{
    const char *name;
    const char *title;
    int year = None;
    int season = None;
    int episode = None;
};

// Episodes, however they are written.
constexpr Row Episodes[] = {
    {"Lamplighters.S01.E01.E02.720p", "Lamplighters", None, 1, 1},
    {"Lamplighters.2x03.2x04.avi", "Lamplighters", None, 2, 3},
    {"Lamplighters s1e02-s1e03", "Lamplighters", None, 1, 2},
    {"lamplighters.s01e02.[720p]", "lamplighters", None, 1, 2},
    {"Lamplighters {S01E02} 720p", "Lamplighters", None, 1, 2},
    {"(Group) Lamplighters - S01E02", "Lamplighters", None, 1, 2},
    {"Lamplighters.1x02.HDTV.720p", "Lamplighters", None, 1, 2},
    {"Lamplighters Season 01 - Episode 02 - The Bell", "Lamplighters", None, 1, 2},
    {"Lamplighters - Season 1 - Ep.02", "Lamplighters", None, 1, 2},
    {"Lamplighters Series 3 Episode 4", "Lamplighters", None, 3, 4},
    {"Lamplighters - Season 1, Episode 2", "Lamplighters", None, 1, 2},
    {"Lamplighters [Season 1] [Episode 2]", "Lamplighters", None, 1, 2},
    {"Lamplighters.S2024E105.720p", "Lamplighters", None, 2024, 105},
    {"Faroleros.1x05.Castellano", "Faroleros", None, 1, 5},
    {"Faroleros - Temporada 2 [HDTV 720p][Cap.205][Castellano]", "Faroleros", None, 2, 5},
    {"Faroleros [HDTV][Cap.205]", "Faroleros", None, 2, 5},
    {"Faroleros T2E5", "Faroleros", None, 2, 5},
    {"Faroleros 2ª Temporada Capítulo 5", "Faroleros", None, 2, 5},
    {"Lampadari.S02E05.iTALiAN.720p", "Lampadari", None, 2, 5},
    {"Lampisterne S02E05 NORDiC 1080p", "Lampisterne", None, 2, 5},
    {"Laternen.S02E05.GERMAN.DL.720p", "Laternen", None, 2, 5},
    {"Laternen Staffel 2 Folge 5", "Laternen", None, 2, 5},
    {"Les.Lampes.S02E05.FRENCH.HDTV", "Les Lampes", None, 2, 5},
    {"Les Lampes - 2x05 VOSTFR", "Les Lampes", None, 2, 5},
    {"Harbour.S01E02.Proper.HDTV", "Harbour", None, 1, 2},
    {"Harbour-S01E02-Group", "Harbour", None, 1, 2},
    {"Harbour - The Lost Lights - S01E02", "Harbour - The Lost Lights", None, 1, 2},
    {"Harbour.and.Lights.Specials.S00E01", "Harbour and Lights Specials", None, 0, 1},
    {"Harbour.E03.720p", "Harbour", None, None, 3},
    {"Harbour.Ep3.720p", "Harbour", None, None, 3},
    {"Harbour 3of8 720p", "Harbour", None, None, 3},
    {"Harbour 3 of 8 720p", "Harbour", None, None, 3},
    {"Harbour (3 of 8) 720p", "Harbour", None, None, 3},
    {"Harbour [3 of 8]", "Harbour", None, None, 3},
    {"Harbour 03 of 08", "Harbour", None, None, 3},
    {"Harbour.Part.3.of.8.HDTV", "Harbour", None, None, 3},
    {"S03 E04 Harbour", "", None, 3, 4},
    {"s03e04", "", None, 3, 4},
    {"E04 - Harbour", "", None, None, 4},
    {"04 - Harbour", "Harbour", None, None, 4},
    {"04. Harbour", "Harbour", None, None, 4},
    {"04 Harbour", "Harbour", None, None, 4},
    {"1-04 Harbour", "Harbour", None, 1, 4},
    {"1x04 - Harbour", "", None, 1, 4},
    {"104 - Harbour", "Harbour", None, None, 104},
    {"Harbour.1.04.avi", "Harbour", None, 1, 4},
    {"Harbour_1_04.avi", "Harbour", None, 1, 4},
    {"Harbour 104 - The Bell.avi", "Harbour", None, 1, 4},
    {"harbour.104.hdtv", "harbour", None, 1, 4},
    {"harbour.1004.hdtv", "harbour", None, 10, 4},
    {"Lamplighters s01-ep02", "Lamplighters", None, 1, 2},
    {"Lamplighters.S01.Ep.02", "Lamplighters", None, 1, 2},
    {"Lamplighters S01 Episode 02", "Lamplighters", None, 1, 2},
    {"Lamplighters.Season.01.E02", "Lamplighters", None, 1, 2},
    {"Lamplighters S01E02+E03", "Lamplighters", None, 1, 2},
    {"Lamplighters S01E02&03", "Lamplighters", None, 1, 2},
    {"Lamplighters.1.Sezon.2.Bölüm", "Lamplighters", None, 1, 2},
    {"Lamplighters 2. Sezon 7. Bölüm 720p", "Lamplighters", None, 2, 7},
    {"Lamplighters S01 EP (01-08) - 1080p", "Lamplighters", None, 1, 1},
    {"Lamplighters S01 E(01-10)", "Lamplighters", None, 1, 1},
    {"Lamplighters - Temporada 5 - 12", "Lamplighters", None, 5, 12},
    {"Lamplighters Ep[03] 720p", "Lamplighters", None, None, 3},
    {"Lamplighters S01 - EP 3", "Lamplighters", None, 1, 3},
    {"Lamplighters S2 - EP03", "Lamplighters", None, 2, 3},
    {"Lamplighters 2-3 of 8", "Lamplighters", None, None, 2},
    {"Lamplighters.S01E02.1080p.10bit.5.1.x265", "Lamplighters", None, 1, 2},
    {"Lamplighters (2x05) The Bell", "Lamplighters", None, 2, 5},
    {"Lamplighters - 2x05a", "Lamplighters", None, 2, 5},
    {"Lamplighters S02E05a", "Lamplighters", None, 2, 5},
    {"Lamplighters.s02e05e06e07", "Lamplighters", None, 2, 5},
    {"Lamplighters 2x05-2x06", "Lamplighters", None, 2, 5},
    {"Lamplighters - [S02] [E05]", "Lamplighters", None, 2, 5},
    {"Lamplighters - s02.e05 - The Bell", "Lamplighters", None, 2, 5},
    {"Lamplighters_s02_e05", "Lamplighters", None, 2, 5},
    {"Lamplighters 205-206", "Lamplighters", None, None, 205},
    {"Lamplighters.S02E05.Part.1.720p", "Lamplighters", None, 2, 5},
    {"Lamplighters II S02E05", "Lamplighters II", None, 2, 5},
    {"Lamplighters 2 - S02E05", "Lamplighters 2", None, 2, 5},
    {"Lamplighters: Dusk S02E05", "Lamplighters: Dusk", None, 2, 5},
    {"Lamplighters & Co. S02E05", "Lamplighters & Co", None, 2, 5},
    {"Lamplighters.and.Sons.UK.S02E05", "Lamplighters and Sons UK", None, 2, 5},
    {"Lamplighters (UK) S02E05", "Lamplighters", None, 2, 5},
    {"Lamplighters.US.S02E05", "Lamplighters US", None, 2, 5},
    {"Who's Lamp Is It S02E05", "Who's Lamp Is It", None, 2, 5},
    {"Dr. Lamp - S02E05", "Dr Lamp", None, 2, 5},
    {"S.L.A.M.P.S02E05", "S L A M P", None, 2, 5},
    {"9-1-1.Lamps.S02E05", "9-1-1 Lamps", None, 2, 5},
    {"60.Lamps.S02E05", "60 Lamps", None, 2, 5},
    {"Lamplighters.S02E05.The.720.Lamps", "Lamplighters", None, 2, 5},
};

// Seasons without an episode.
constexpr Row Seasons[] = {
    {"Lamplighters.Series.3.720p", "Lamplighters", None, 3},
    {"Lamplighters (Season 1) 1080p", "Lamplighters", None, 1},
    {"Lamplighters S01-S03 Complete 720p", "Lamplighters", None, 1},
    {"Lamplighters Seasons 1-3", "Lamplighters", None, 1},
    {"Lamplighters Season 1-3", "Lamplighters", None, 1},
    {"Lamplighters Season 1 to 3", "Lamplighters", None, 1},
    {"Lamplighters S01 S02 S03 720p", "Lamplighters", None, 1},
    {"Lamplighters Seasons 1 & 2", "Lamplighters", None, 1},
    {"Lamplighters.S01-03.720p", "Lamplighters", None, 1},
    {"Lamplighters Complete Series 1-6", "Lamplighters", None, 1},
    {"Lamplighters.S01.Disc.1", "Lamplighters", None, 1},
    {"Lamplighters.S01D02.DVDR", "Lamplighters", None, 1},
    {"Lamplighters Season 2 Disc 3", "Lamplighters", None, 2},
    {"Lamplighters S02 Vol 1 1080p", "Lamplighters", None, 2},
};

// Episodes with a year or a date.
constexpr Row DatedEpisodes[] = {
    {"Lamplighters - S01E01 - Pilot (2010).mkv", "Lamplighters", 2010, 1, 1},
    {"Lamplighters.2015.S02E03.1080p", "Lamplighters", 2015, 2, 3},
    {"Lamplighters (2015) 2x03", "Lamplighters", 2015, 2, 3},
    {"Lamplighters S02E03 2015-04-05", "Lamplighters", 2015, 2, 3},
    {"Lamplighters - 2015-04-05 - S02E03", "Lamplighters", 2015, 2, 3},
    {"Lamplighters.2015.04.05.S02E03.720p", "Lamplighters", 2015, 2, 3},
    {"Lamplighters (2021) S01 EP(01-08) [1080p]", "Lamplighters", 2021, 1, 1},
    {"Lamplighters S02E05 (2015) April", "Lamplighters", 2015, 2, 5},
    {"Lamplighters 12 BLM (01.02.2020) 720p", "Lamplighters", 2020, None, 12},
};

// Anime.
constexpr Row Anime[] = {
    {"[Group] Lantern Road - 12 (1080p) [AABBCCDD].mkv", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road 12 [1080p]", "Lantern Road", None, None, 12},
    {"[Group]Lantern Road 12[1080p].mkv", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road - 12 END [1080p]", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road - 12 [END]", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road 2 - 12 [1080p]", "Lantern Road 2", None, None, 12},
    {"[Group] Lantern Road 2nd Season - 12", "Lantern Road", None, 2, 12},
    {"[Group] Lantern Road Season 2 - 12", "Lantern Road", None, 2, 12},
    {"[Group] Lantern Road S2E12", "Lantern Road", None, 2, 12},
    {"[Group] Lantern Road - S02E12v2", "Lantern Road", None, 2, 12},
    {"[Group] Lantern Road Ep12", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road Ep 12v2", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road - Episode 12", "Lantern Road", None, None, 12},
    {"[Group] Lantern Road (01-12) [1080p]", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road [01-12] [1080p]", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road 01~12 [1080p]", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road - 01 ~ 12 [1080p]", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road - 01+02", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road - 01&02 [720p]", "Lantern Road", None, None, 1},
    {"[Group] Lantern Road Movie [1080p]", "Lantern Road Movie"},
    {"[Group] Lantern Road - The Movie [1080p]", "Lantern Road - The Movie"},
    {"[Group] Lantern Road (Movie) [1080p]", "Lantern Road"},
    {"[Group] 86 Lanterns - 12", "86 Lanterns", None, None, 12},
    {"[Group] Lantern Road!! - 12", "Lantern Road!!", None, None, 12},
    {"[Group] Lantern Road! Second Stage - 12", "Lantern Road! Second Stage", None, None, 12},
    {"[Group] Lantern x Road - 12", "Lantern x Road", None, None, 12},
    {"[Group] Lantern Road: Dusk - 12", "Lantern Road: Dusk", None, None, 12},
    {"[Group].Lantern.Road.-.12.[1080p]", "Lantern Road", None, None, 12},
    {"[Group]_Lantern_Road_12_(1080p)", "Lantern Road", None, None, 12},
    {"Lantern_Road_-_12_[Group]", "Lantern Road", None, None, 12},
    {"Lantern Road - 12.mkv", "Lantern Road", None, None, 12},
    {"Lantern Road 12.mkv", "Lantern Road 12"},
    {"Lantern Road 012.mkv", "Lantern Road", None, None, 12},
    {"Lantern Road - 012 - The Bell.mkv", "Lantern Road", None, None, 12},
    {"Lantern Road EP012.mkv", "Lantern Road", None, None, 12},
    {"Lantern Road #12.mkv", "Lantern Road", None, None, 12},
    {"12 - Lantern Road.mkv", "12 - Lantern Road"},
    {"[字幕组] 灯火之路 / Lantern Road [12][1080p]", "Lantern Road", None, None, 12},
    {"[字幕组][灯火之路_Lantern Road][12][1080p]", "Lantern Road", None, None, 12},
    {"[字幕组] 灯火之路 Lantern Road - 12 [1080p]", "Lantern Road", None, None, 12},
    {"灯火之路.Lantern.Road.2019.1080p", "Lantern Road", 2019},
};

// Titles in other scripts than the Latin one.
constexpr Row Scripts[] = {
    {"灯火之路 第12集.mkv", "灯火之路", None, None, 12},
    {"灯火之路.第二季.第12集.1080p", "灯火之路", None, 2, 12},
    {"灯火.2019.1080p.mkv", "灯火", 2019},
    {"ランタンの道 第12話.mkv", "ランタンの道", None, None, 12},
    {"등대지기.E12.1080p", "등대지기", None, None, 12},
    {"등대지기 12회 1080p", "등대지기", None, None, 12},
    {"Фонарщики.S02E05.720p", "Фонарщики", None, 2, 5},
    {"Фонарщики / Lamplighters (2011) BDRip 1080p", "Фонарщики / Lamplighters", 2011},
    {"Фонарщики (1 сезон: 1-12 серии из 12)", "Фонарщики", None, 1, 1},
    {"Фонарщики - 2x05 - Мост", "Фонарщики", None, 2, 5},
    {"Фонарщики 1 сезон", "Фонарщики", None, 1},
    {"Фонарщики 12 серия", "Фонарщики", None, None, 12},
    {"Фонарщики (2011) WEB-DL 1080p", "Фонарщики", 2011},
    {"Φαροφύλακες.S02E05.720p", "Φαροφύλακες", None, 2, 5},
    {"Lamplighters 1-12 серии", "Lamplighters", None, None, 1},
};

// Films, and dates without an episode.
constexpr Row Films[] = {
    {"Lamplighters.04.05.2015.HDTV", "Lamplighters", 2015},
    {"Lamplighters 5 April 2015 720p", "Lamplighters", 2015},
    {"Lamplighters.2015.Apr.05.720p", "Lamplighters", 2015},
    {"lamplighters 2015-04-05", "lamplighters", 2015},
    {"Les Lampes 3 FRENCH DVDRIP 2011", "Les Lampes 3", 2011},
    {"Harbour.Lights.2019.FRENCH.1080p", "Harbour Lights", 2019},
    {"Harbour.Lights.TRUEFRENCH.DVDRIP", "Harbour Lights"},
    {"Harbour.Lights.MULTi.1080p.BluRay", "Harbour Lights"},
    {"Harbour Lights (2019) (1080p BluRay x265)", "Harbour Lights", 2019},
    {"Harbour Lights [2019] 1080p", "Harbour Lights", 2019},
    {"Harbour Lights 2019-1080p", "Harbour Lights", 2019},
    {"Harbour.Lights.2019.mkv", "Harbour Lights", 2019},
    {"harbour.lights.(2019).mkv", "harbour lights", 2019},
    {"Harbour Lights (2019) CD1.avi", "Harbour Lights", 2019},
    {"Harbour.Lights.1080p.BluRay.2019", "Harbour Lights", 2019},
    {"Harbour.Lights.BDRip.2019.avi", "Harbour Lights", 2019},
    {"2010.Harbour.2015.1080p", "2010 Harbour", 2015},
    {"Harbour 2000 (2019)", "Harbour 2000", 2019},
    {"Harbour.1999.2019.1080p", "Harbour 1999", 2019},
    {"1999.mkv", "1999"},
    {"1999 (2019).mkv", "1999", 2019},
    {"2036 Harbour Dreams (2010)", "2036 Harbour Dreams", 2010},
    {"10.000.Lights.2008.720p", "10 000 Lights", 2008},
    {"2 Lights 2 Harbours 2003", "2 Lights 2 Harbours", 2003},
    {"300.2006.720p", "300", 2006},
    {"127.Lights.2010.720p", "127 Lights", 2010},
    {"Harbour.3.Lights.Out.2010.720p", "Harbour 3 Lights Out", 2010},
    {"Harbour 4 2010 720p", "Harbour 4", 2010},
    {"Harbour 4 720p BluRay", "Harbour 4"},
    {"Harbour.Vol.2.2010.720p", "Harbour Vol 2", 2010},
    {"Harbour (Extended) 2010 720p", "Harbour", 2010},
    {"Harbour.Unrated.2010.720p", "Harbour", 2010},
    {"Harbour UNRATED 720p", "Harbour"},
    {"Harbour.2010.Extended.Cut", "Harbour", 2010},
    {"Harbour [Extended Edition] 720p", "Harbour"},
    {"The.Unrated.2010.720p", "The Unrated", 2010},
    {"The.Harbour.Festival.2011.720p", "The Harbour Festival", 2011},
    {"A.Real.Harbour.2010", "A Real Harbour", 2010},
    {"Limited.Harbour.2010", "Limited Harbour", 2010},
    {"The.English.Harbour.1996", "The English Harbour", 1996},
    {"Italian.for.Harbours.2000", "Italian for Harbours", 2000},
    {"www.site.com - Harbour 2010 720p", "Harbour", 2010},
    {"[www.site.com] Harbour 2010 720p", "Harbour", 2010},
    {"[site.com].Harbour.2010.720p", "Harbour", 2010},
    {"Harbour.2010.720p.[site.com]", "Harbour", 2010},
    {"Harbour Extras 720p", "Harbour"},
    {"Harbour trailer 720p", "Harbour trailer"},
    {"Harbour.SAMPLE.720p", "Harbour"},
    {"sample-harbour.2010.720p", "sample-harbour", 2010},
    {"Harbour Tom 3", "Harbour Tom 3"},
    {"Harbour 2049 (2017)", "Harbour 2049", 2017},
    {"Harbour Lights (2012) {imdb-tt1234567}", "Harbour Lights", 2012},
    {"Harbour Lights tt1234567 720p", "Harbour Lights"},
    {"Harbour Lights [tt1234567] 2012", "Harbour Lights", 2012},
    {"Harbour.Lights.2012.tt1234567.mkv", "Harbour Lights", 2012},
    {"Harbour.Lights.(2012).(Director's.Cut)", "Harbour Lights", 2012},
    {"Harbour Lights {2012} 720p", "Harbour Lights", 2012},
    {"Harbour.Lights.3D.H-SBS.2012", "Harbour Lights", 2012},
    {"Harbour Lights Malayalam HDRip 720p", "Harbour Lights"},
    {"Harbour Lights Vietnamese 1080p WEB-DL", "Harbour Lights"},
    {"Harbour Lights (2019) Kannada WEB-DL - 1080p - AVC - AAC - 1.4GB", "Harbour Lights", 2019},
    {"Lamplighters.Episode.4.A.New.Lamp.1977.1080p", "Lamplighters Episode 4 A New Lamp", 1977},
    {"Lamplighters Episode IV A New Lamp 1977", "Lamplighters Episode IV A New Lamp", 1977},
    {"The.Harbour.FESTIVAL.2011.720p", "The Harbour", 2011},
    {"Lamplighters April 5, 2015 720p", "Lamplighters", 2015},
    {"May 2015", "May", 2015},
    {"The April Lamps 2003", "The April Lamps", 2003},
    {"1000 Lamps 2012 720p", "1000 Lamps", 2012},
    {"Ten.Lamps.x264-720p", "Ten Lamps"},
    {"The.Lamp.2012.iNTERNAL.720p", "The Lamp", 2012},
    {"The.Lamp.REPACK.2012", "The Lamp", 2012},
    {"The Lamp - Director's Cut (2012)", "The Lamp", 2012},
    {"The Lamp Theatrical Cut 2012 720p", "The Lamp", 2012},
    {"The Lamp [Remastered] (2012)", "The Lamp", 2012},
    {"The.Lamp.IMAX.2012.1080p", "The Lamp", 2012},
    {"The Lamp 4K 2012", "The Lamp", 2012},
    {"The Lamp (2012) - 1080p - Bluray", "The Lamp", 2012},
    {"The Lamp 2012 [1080p] [BluRay] [5.1] [GRP]", "The Lamp", 2012},
    {"The Lamp | 2012 | 1080p", "The Lamp", 2012},
};

std::optional<int> optional(int value)
{
    return value == None ? std::nullopt : std::optional(value);
}

QByteArray text(const std::optional<int> &number)
{
    return number ? QByteArray::number(*number) : QByteArray("none");
}

void addRows(std::span<const Row> rows)
{
    for (const Row &row : rows)
        QTest::newRow(row.name) << &row;
}
} // namespace

Q_DECLARE_METATYPE(const Row *)

/// The many forms in which releases write the same facts.
class FileNameFormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesInEveryForm_data()
    {
        QTest::addColumn<const Row *>("row");
        addRows(Episodes);
        addRows(Seasons);
        addRows(DatedEpisodes);
        addRows(Anime);
        addRows(Scripts);
        addRows(Films);
    }

    void namesInEveryForm()
    {
        QFETCH(const Row *, row);
        const VideoFileComponents said = parseVideoName(QString::fromUtf8(row->name));
        QCOMPARE(said.title, QString::fromUtf8(row->title));
        QCOMPARE(text(said.year), text(optional(row->year)));
        QCOMPARE(text(said.season), text(optional(row->season)));
        QCOMPARE(text(said.episode), text(optional(row->episode)));
    }
};

QTEST_GUILESS_MAIN(FileNameFormsTest)
#include "FileNameFormsTest.moc"
