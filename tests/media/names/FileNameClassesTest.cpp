#include "NameRows.h"

#include <tests/support/TestMain.h>

using NameRows::None;
using NameRows::Row;

namespace
{
// Seasons and episodes that run into the title, and letters and words of other languages.
constexpr Row JoinedAndForeign[] = {
    {"Quillmouth S02E05.mkv", "Quillmouth", None, 2, 5},
    {"BrackHarbour1x07.avi", "BrackHarbour", None, 1, 7},
    {"LadderS03E11.720p.mkv", "Ladder", None, 3, 11},
    {"Lamplighters T03E04.avi", "Lamplighters", None, 3, 4},
    {"Lamplighters T02xE09", "Lamplighters", None, 2, 9},
    {"Lamplighters 3ª Temporada - 12 ao 14", "Lamplighters", None, 3, 12},
    {"Lamplighters - 3ème Saison Episode 4", "Lamplighters", None, 3, 4},
    {"Фонарщики 2 сезон 7 серия.avi", "Фонарщики", None, 2, 7},
    {"Фонарщики. Сезон 3. Эпизод 12. Мост (2011).mkv", "Фонарщики", 2011, 3, 12},
    {"Fonarshiki.(4.sezon.3.serija.iz.12).2005.DVDRip.avi", "Fonarshiki", 2005, 4, 3},
    {"5 сезон", "", None, 5},
};

// Pairs of numbers: a season and its episode, a running number, a title, a clock.
constexpr Row Pairs[] = {
    {"Lamplighters.s04.11.HDTV", "Lamplighters", None, 4, 11},
    {"Lamplighters.03.08.avi", "Lamplighters", None, 3, 8},
    {"Lamplighters - 7.04 - The Bell", "Lamplighters", None, 7, 4},
    {"Lamplighters [3.112] The Bell.mp4", "Lamplighters", None, 3, 112},
    {"Lamplighters-12_03.avi", "Lamplighters", None, 12, 3},
    {"Lamplighters Episode #2.7 (2014)", "Lamplighters", 2014, 2, 7},
    {"4-07. The Bell.mkv", "The Bell", None, 4, 7},
    {"417 - The Bell.avi", "The Bell", None, None, 417},
    {"417-418 - The Bells.avi", "The Bells", None, None, 417},
    {"300 - The Bell 2006 1080p BluRay", "300 - The Bell", 2006},
    {"3.09.to.Ostermoor.2007.mkv", "3 09 to Ostermoor", 2007},
    {"24-7 Harbour - S01E02", "24-7 Harbour", None, 1, 2},
};

// Dates and years.
constexpr Row Dates[] = {
    {"Evening.Show.14.09.21.Some.Guest.HDTV", "Evening Show"},
    {"raw.news.18.12.03.avi", "raw news"},
    {"Harbour Films 1999-2004 720p", "Harbour Films", 1999},
};

// What a title ends before.
constexpr Row Tails[] = {
    {"Harbour.2160p.HFR.60fps.HEVC", "Harbour"},
    {"Harbour.HFR.48fps.BDRip.x264.mkv", "Harbour"},
    {"Harbour Lights - The Complete Series 720p", "Harbour Lights"},
    {"Harbour Lights The Complete Second Season 720p", "Harbour Lights The Complete Second Season"},
    {"Harbour Lights Complete Collection", "Harbour Lights"},
    {"Harbour Lights - Anniversary Edition (1999) 720p", "Harbour Lights", 1999},
    {"Harbour Lights AKA Luces 2003 DVDRip", "Harbour Lights", 2003},
    {"Harbour Lights Part 2.mkv", "Harbour Lights"},
    {"Harbour Lights Part Two 2004.mkv", "Harbour Lights Part Two", 2004},
    {"Lamplighters - 212-213 - S09E03-04", "Lamplighters", None, 9, 3},
};

// Brackets, groups and scripts.
constexpr Row BracketsAndScripts[] = {
    {"1080p Harbour.Lights.S02E04", "Harbour Lights", None, 2, 4},
    {"[Group-Raws][Batch] Lantern Road 1-12 720p", "Lantern Road", None, None, 1},
    {"[字幕组]灯火之路 Lantern Road[05][1080P]", "Lantern Road", None, None, 5},
    {"[Group][灯火 Lantern][Lantern Road][05][1080P]", "Lantern Road", None, None, 5},
    {"[Group] Lantern Road - 07.5 [720p]", "Lantern Road", None, None, 7},
    {"[Group]_[LANTERN]_[DVDRIP]_[115]_[x264]", "LANTERN", None, None, 115},
    {"[Group] Lantern Road OVA [720p]", "Lantern Road"},
    {"Lantern Road 312 VOSTFR 720p", "Lantern Road", None, None, 312},
};

// Numbers with the season in their hundreds, and those that are none.
constexpr Row Hundreds[] = {
    {"lamplighters.2011.305.hdtv-grp", "lamplighters", 2011, 3, 5},
    {"lamplighters_305_the_bell_tolls", "lamplighters", None, 3, 5},
    {"lamplighters.20405.hdtv", "lamplighters", None, 2, 4},
    {"NAL.204.PPV.HDTV.x264-GRP", "NAL 204"},
    {"Apollo 13 1995 1080p", "Apollo 13", 1995},
    {"Room 237 2012 720p", "Room 237", 2012},
    {"Assault.on.Pier.113.BluRay.1080p", "Assault on Pier 113"},
};

// Seasons and episodes in words.
constexpr Row Words[] = {
    {"Lamplighters Season Two Episode 3", "Lamplighters", None, 2, 3},
    {"Lamplighters Season 2", "Lamplighters", None, 2},
    {"Lantern Road 第二季 第03集", "Lantern Road", None, 2, 3},
    {"등대지기 시즌2 05회.mkv", "등대지기", None, 2, 5},
    {"등대지기 E12.201016.1080p", "등대지기", None, None, 12},
    {"Harbour.Lights.2019.CD2.avi", "Harbour Lights", 2019},
    {"Harbour.Lights.CD1.avi", "Harbour Lights"},
    {"Harbour.Lights.AMZN.WEB-DL.1080p", "Harbour Lights"},
    {"Harbour 2049 2017 1080p", "Harbour 2049", 2017},
    {"1984.1956.DVDRip", "1984", 1956},
    {"2012.2009.720p", "2012", 2009},
};

// Several episodes, and names without a title.
constexpr Row Several[] = {
    {"Lamplighters.S01E01E02.720p", "Lamplighters", None, 1, 1},
    {"Lamplighters.S01E01-E03", "Lamplighters", None, 1, 1},
    {"Lamplighters 1x02x03", "Lamplighters", None, 1, 2},
    {"Lamplighters 2x04-05 720p", "Lamplighters", None, 2, 4},
    {"Lamplighters - 1x09 1x10", "Lamplighters", None, 1, 9},
    {"Lamplighters.2013.05.02.Guest.HDTV", "Lamplighters", 2013},
    {"Lamplighters.2x10.720p", "Lamplighters", None, 2, 10},
    {"S02E03 - The Bell.mkv", "", None, 2, 3},
    {"1x02 - The Bell.mkv", "", None, 1, 2},
    {"Episode 5.mkv", "", None, None, 5},
};

// Ways to write one episode.
constexpr Row OneEpisode[] = {
    {"Lamplighters Ep05", "Lamplighters", None, None, 5},
    {"Lamplighters Ep. 05 720p", "Lamplighters", None, None, 5},
    {"Lamplighters.E05.720p", "Lamplighters", None, None, 5},
    {"Lamplighters - Folge 12 - Die Glocke", "Lamplighters", None, None, 12},
    {"Lamplighters.S02.E05.720p", "Lamplighters", None, 2, 5},
    {"Lamplighters - S02 - E05", "Lamplighters", None, 2, 5},
    {"Lamplighters S2 Ep5", "Lamplighters", None, 2, 5},
    {"Lamplighters Saison 2 Épisode 5", "Lamplighters", None, 2, 5},
    {"Lamplighters.Stagione.2.Episodio.5.720p", "Lamplighters", None, 2, 5},
    {"Lamplighters 2. Staffel Folge 5", "Lamplighters", None, 2, 5},
    {"Lamplighters Sezon 2 Bölüm 5", "Lamplighters", None, 2, 5},
    {"Lamplighters Sezon 2 Odcinek 5", "Lamplighters", None, 2, 5},
};

// Anime.
constexpr Row Anime[] = {
    {"[Group] Lamplighters S02E05 (1080p)", "Lamplighters", None, 2, 5},
    {"[Group] Lamplighters - S2 - 05 (1080p)", "Lamplighters", None, 2, 5},
    {"[Group] Lamplighters II - 05 (1080p)", "Lamplighters II", None, None, 5},
    {"[Group] Lamplighters (2021) - 05 (1080p)", "Lamplighters", 2021, None, 5},
    {"[Group] Lamplighters - 1005 (1080p)", "Lamplighters", None, None, 1005},
    {"[Group] Lamplighters 05-06 (1080p)", "Lamplighters", None, None, 5},
    {"[Group] Lamplighters - 01v2 [ABCD1234]", "Lamplighters", None, None, 1},
    {"Lamplighters.(US).S02E05.720p", "Lamplighters", None, 2, 5},
};

// Films.
constexpr Row Films[] = {
    {"The Harbour (1999)", "The Harbour", 1999},
    {"The Harbour [1999]", "The Harbour", 1999},
    {"The.Harbour.1999", "The Harbour", 1999},
    {"The_Harbour_1999_DVDRip", "The Harbour", 1999},
    {"The Harbour - 1999", "The Harbour", 1999},
    {"The Harbour, 1999", "The Harbour", 1999},
    {"The.Harbour.Directors.Cut.1999.720p", "The Harbour", 1999},
    {"The.Harbour.1999.Directors.Cut.720p", "The Harbour", 1999},
    {"The.Harbour.3D.1999.HSBS.1080p", "The Harbour", 1999},
    {"The Harbour 2: Lights On (1999)", "The Harbour 2: Lights On", 1999},
    {"The.Harbour.II.1999.720p", "The Harbour II", 1999},
    {"Web of Lights 2011 1080p", "Web of Lights", 2011},
    {"The Extended Family S01E04", "The Extended Family", None, 1, 4},
    {"Final Harbour 2003", "Final Harbour", 2003},
    {"The.Final.Cut.2004.1080p", "The Final Cut", 2004},
    {"French.Harbour.2001.DVDRip", "French Harbour", 2001},
    {"The French Harbour 1080p", "The French Harbour"},
    {"Harbour-Lights-S01E02-720p", "Harbour-Lights", None, 1, 2},
    {"Harbour_Lights_S01E02_720p", "Harbour Lights", None, 1, 2},
    {"Harbour Lights - 1x02 - The Bell - HDTV.avi", "Harbour Lights", None, 1, 2},
    {"Harbour Lights [1x02] The Bell", "Harbour Lights", None, 1, 2},
    {"M.A.S.K.S01E02.720p", "M A S K", None, 1, 2},
    {"Harbour.2.0.2018.1080p", "Harbour 2 0", 2018},
    {"Harbour v2.0 720p", "Harbour"},
    {"Harbour 10.30 to Dawn.mkv", "Harbour 10 30 to Dawn"},
    {"Version 3.11 Harbour.mkv", "Version 3 11 Harbour"},
    {"Vault.7.2011.720p", "Vault 7", 2011},
    {"Area.51.2015.1080p", "Area 51", 2015},
    {"District.9.2009.720p", "District 9", 2009},
    {"Se7en.Lights.1995.720p", "Se7en Lights", 1995},
    {"X-Lamps.S02E03", "X-Lamps", None, 2, 3},
    {"Harbour.EXTENDED.720p.BluRay", "Harbour"},
    {"Harbour.1080p.NF.WEB-DL", "Harbour"},
    {"Harbour (2011) Part 2 720p", "Harbour", 2011},
    {"Harbour.Part.1.2011.720p", "Harbour Part 1", 2011},
    {"Harbour.pt.1.avi", "Harbour"},
    {"Lamplighters.Mini.Series.1of3.720p", "Lamplighters Mini Series", None, None, 1},
    {"Lamplighters.0102.HDTV", "Lamplighters", None, 1, 2},
};

// What stands before a title, or looks as if it did not belong to it.
constexpr Row Beginnings[] = {
    {"(1999) Harbour Lights.mkv", "Harbour Lights", 1999},
    {"[1999] Harbour Lights 720p", "Harbour Lights", 1999},
    {"[1999] Harbour Lights 12.mkv", "Harbour Lights 12", 1999},
    {"1999 (2004) 720p", "1999", 2004},
    {"2021-03-17 - Harbour Tonight.mp4", "Harbour Tonight", 2021},
    {"2021.03.17 - Harbour Tonight 720p.mp4", "Harbour Tonight", 2021},
    {"2021 - Harbour Tonight.mp4", "2021 - Harbour Tonight"},
    {"8-2-2.S02E05.720p", "8-2-2", None, 2, 5},
    {"8-2-2 Coast Guard S02E05", "8-2-2 Coast Guard", None, 2, 5},
    {"Harbour.212-214.s16e03-05", "Harbour", None, 16, 3},
    {"12 серия.avi", "", None, None, 12},
    {"69. Bölüm.avi", "", None, None, 69},
    {"12 Episodes of Light 2011 720p", "12 Episodes of Light", 2011},
};
} // namespace

/// Names as they are given to videos, class by class; beside each class stand names that look alike and are
/// not.
class FileNameClassesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfEveryClass_data()
    {
        QTest::addColumn<const Row *>("row");
        NameRows::add(JoinedAndForeign);
        NameRows::add(Pairs);
        NameRows::add(Dates);
        NameRows::add(Tails);
        NameRows::add(BracketsAndScripts);
        NameRows::add(Hundreds);
        NameRows::add(Words);
        NameRows::add(Several);
        NameRows::add(OneEpisode);
        NameRows::add(Anime);
        NameRows::add(Films);
        NameRows::add(Beginnings);
    }

    void namesOfEveryClass()
    {
        QFETCH(const Row *, row);
        NameRows::check(*row);
    }

    void partOfATitleIsSearchedFor()
    {
        const VideoFileComponents said = parseVideoName(QStringLiteral("Harbour.Lights.Part.2.720p.mkv"));
        QCOMPARE(said.title, QStringLiteral("Harbour Lights"));
        QCOMPARE(said.searchString, QStringLiteral("Harbour Lights Part 2"));
    }
};

PLOVENDIX_TEST(FileNameClassesTest)
#include "FileNameClassesTest.moc"
