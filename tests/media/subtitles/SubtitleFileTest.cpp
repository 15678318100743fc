#include <media/subtitles/SubtitleFile.h>
#include <media/subtitles/SubtitleFormat.h>
#include <media/subtitles/SubtitleUnpacker.h>
#include <tests/support/TestMain.h>
#include <tests/support/Work.h>
#include <tests/support/standin/Packing.h>

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray Srt = "1\r\n00:00:01,000 --> 00:00:02,500\r\nThe lamp is lit.\r\n\r\n";
}

class SubtitleFileTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsAreKnownByTheirContent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("format");
        const auto row = [](const char *name, const QString &text, const QString &format) {
            QTest::newRow(name) << text << format;
        };
        row("srt", u"1\n00:00:01,000 --> 00:00:02,500\nText\n"_s, u"srt"_s);
        row("srt with a dot", u"1\n00:00:01.000 --> 00:00:02.500\nText\n"_s, u"srt"_s);
        row("srt without numbers", u"0:0:1,0-->0:0:2,5\nText\n"_s, u"srt"_s);
        row("vtt", u"WEBVTT\n\n00:01.000 --> 00:02.500\nText\n"_s, u"vtt"_s);
        row("vtt with hours", u"WEBVTT - title\n\n1\n01:00:01.000 --> 01:00:02.500\nText\n"_s, u"vtt"_s);
        row("ass", u"[Script Info]\n[V4+ Styles]\n[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,,,,,,,Text"_s,
            u"ass"_s);
        row("ssa", u"[Script Info]\n[V4 Styles]\n[Events]\nDialogue: Marked=0,0:00:01.00,,Text"_s, u"ssa"_s);
        row("srt with old line ends", u"1\r00:00:01,000 --> 00:00:02,500\rText\r"_s, u"srt"_s);
        row("vtt with old line ends", u"WEBVTT\r\r00:01.000 --> 00:02.500\rText\r"_s, u"vtt"_s);
        row("vtt with line ends of two", u"WEBVTT\r\n\r\n01:00:01.000 --> 01:00:02.500\r\nText\r\n"_s,
            u"vtt"_s);
        row("ass with old line ends",
            u"[Script Info]\r[V4+ Styles]\r[Events]\rDialogue: 0,0:00:01.00,Text\r"_s, u"ass"_s);
        row("frames", u"{1}{1}23.976\n{25}{75}Text|more\n"_s, u"sub"_s);
        row("tenths", u"[10][35]/Text|more\n"_s, u"mpl"_s);
        row("viewer", u"[INFORMATION]\n00:00:01.00,00:00:02.00\nText[br]more\n"_s, u"sub"_s);
        row("player", u"00:00:13:Text\n"_s, u"txt"_s);
        row("sami", u"<SAMI>\n<BODY><SYNC Start=1000><P>Text"_s, u"smi"_s);
        row("ttml",
            u"<?xml version=\"1.0\"?><tt xmlns=\"x\"><body><div><p begin=\"1s\">Text</p></div></body></tt>"_s,
            u"dfxp"_s);
        row("page", u"<!DOCTYPE html><html><p>00:00:01,000 --> 00:00:02,500</p></html>"_s, QString());
        row("notice", u"You have downloaded your allowed subtitles. Come back at 00:00."_s, QString());
        row("empty", QString(), QString());
        row("vtt without a cue", u"WEBVTT\n\nNOTE nothing here"_s, QString());
        row("ass without a line", u"[Script Info]\n[V4+ Styles]\n"_s, QString());
    }
    void formatsAreKnownByTheirContent()
    {
        QFETCH(const QString, text);
        QTEST(subtitleFormat(text).value_or(QString()), "format");
    }

    void searchForASignGrowsLikeTheText_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("end");
        QTest::newRow("xml") << u"<tt "_s << u"<px"_s;
        QTest::newRow("sami") << u"<SAMI>"_s << u"<SYNCStart"_s;
        QTest::newRow("styles") << u"[V4+ Styles]\n"_s << u"xDialogue:"_s;
        QTest::newRow("lines") << u"\n"_s << u"x1:1:1,1-->1:1:1"_s;
    }
    void searchForASignGrowsLikeTheText()
    {
        QFETCH(const QString, part);
        QFETCH(const QString, end);
        constexpr qsizetype Characters = 32LL * 1024;
        const QString text = part.repeated(Characters / part.size()) + end;
        const QString longer = part.repeated(4 * Characters / part.size()) + end;
        QVERIFY(!subtitleFormat(text) && !subtitleFormat(longer));
        QVERIFY(growsLikeItsInput([&] { subtitleFormat(text); }, [&] { subtitleFormat(longer); }));
    }

    void packedFilesAreUnpacked_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("plain") << Srt;
        QTest::newRow("gzip") << gzipped(Srt);
        QTest::newRow("zip") << zipped("folder/Film.srt", Srt);
        QTest::newRow("zip with a path out") << zipped("../../Film.SRT", Srt);
        QTest::newRow("zip with a name of no subtitle's kind") << zipped("Film.mpl", Srt);
        QTest::newRow("utf-8 with a mark") << "\xEF\xBB\xBF" + Srt;
    }
    void packedFilesAreUnpacked()
    {
        QFETCH(const QByteArray, bytes);
        const SubtitleFile file = SubtitleFile::read(bytes, u"eng"_s);
        QCOMPARE(file.failure, SubtitleFile::Failure::None);
        QCOMPARE(file.utf8, Srt);
        QCOMPARE(file.extension, u"srt"_s);
    }

    void bestFileOfAnArchiveIsTaken()
    {
        const QByteArray notes = "00:00:01:Made by us.\n00:00:05:Visit us.\n";
        for (const auto &entries : {QList<std::pair<QByteArray, QByteArray>>{
                                        {"read.txt", notes}, {"Film.srt", Srt}, {"more.txt", notes}},
                                    {{"a/Film.srt", Srt}, {"b/Film.srt", notes}, {"c.nfo", notes}}}) {
            const SubtitleFile file = SubtitleFile::read(zipped(entries), u"eng"_s);
            QCOMPARE(file.failure, SubtitleFile::Failure::None);
            QCOMPARE(file.utf8, Srt);
        }
    }

    void goodFileBehindABadOneIsTaken_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray ours = "Not this one.\n" + Srt;
        const QByteArray two = zipped({{"First.srt", ours}, {"Second.srt", Srt}});
        QTest::newRow("wrong sum") << withWrongSum(two);
        QTest::newRow("damaged beyond reading on") << withoutDeflation(two);
        QTest::newRow("locked") << locked(two);
        QTest::newRow("empty") << zipped({{"First.srt", {}}, {"Second.srt", Srt}});
        QTest::newRow("notice") << zipped(
            {{"First.srt", "Nothing but an advertisement."}, {"Second.srt", Srt}});
        QTest::newRow("packed once more")
            << zipped({{"a.srt", gzipped(QByteArray(100'000, ' '))}, {"b.srt", Srt}});
        QTest::newRow("less likely by its name")
            << locked(zipped({{"First.srt", ours}, {"Second.txt", Srt}}));
    }
    void goodFileBehindABadOneIsTaken()
    {
        QFETCH(const QByteArray, bytes);
        const SubtitleFile file = SubtitleFile::read(bytes, u"eng"_s);
        QCOMPARE(file.failure, SubtitleFile::Failure::None);
        QCOMPARE(file.utf8, Srt);
    }

    void otherThingsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("failure");
        const auto row = [](const char *name, const QByteArray &bytes, SubtitleFile::Failure failure) {
            QTest::newRow(name) << bytes << static_cast<int>(failure);
        };
        using Failure = SubtitleFile::Failure;
        row("nothing", {}, Failure::Empty);
        row("blanks", QByteArray(30, '\n'), Failure::NoSubtitle);
        row("few blanks", QByteArray(10, ' '), Failure::Empty);
        row("picture", "GIF89a" + QByteArray(500, '\1'), Failure::NoSubtitle);
        row("zeros around a cue", QByteArray(100, '\0') + "\n" + Srt, Failure::NoSubtitle);
        row("page", "<html><body>" + Srt + "</body></html>", Failure::NoSubtitle);
        row("rar", "Rar!\x1A\x07" + Srt, Failure::UnknownArchive);
        row("7z", QByteArray::fromHex("377abcaf271c0004") + Srt, Failure::UnknownArchive);
        row("zip without a subtitle", zipped("readme.nfo", Srt), Failure::NoSubtitle);
        row("zip with a hidden file", zipped("__MACOSX/.srt", Srt), Failure::NoSubtitle);
        row("zip with another hidden file", zipped("C:\\films\\.srt", Srt), Failure::NoSubtitle);
        row("zip with an empty file", zipped("a.srt", {}), Failure::Empty);
        row("zip with a notice", zipped("a.srt", "Nothing but an advertisement."), Failure::NoSubtitle);
        row("zip with a damaged file", withWrongSum(zipped("a.srt", Srt)), Failure::Damaged);
        row("locked zip", locked(zipped("a.srt", Srt)), Failure::UnknownArchive);
        row("zip with a locked file behind a notice",
            locked(zipped({{"a.txt", Srt}, {"b.srt", "Nothing but an advertisement."}})),
            Failure::UnknownArchive);
        row("zip of many notices",
            zipped(QList<std::pair<QByteArray, QByteArray>>(500, {"a.srt", "Nothing but an advertisement."})),
            Failure::NoSubtitle);
        row("zip of large notices",
            zipped(QList<std::pair<QByteArray, QByteArray>>(12, {"a.srt", QByteArray(7 * 1024 * 1024, ' ')})
                   << std::pair<QByteArray, QByteArray>("b.srt", Srt)),
            Failure::NoSubtitle);
        row("broken gzip", gzipped(Srt.repeated(20)).left(40), Failure::Damaged);
        row("broken zip", zipped("a.srt", Srt).left(30), Failure::Damaged);
        const QByteArray whole = zipped("a.srt", Srt);
        row("zip without its directory", whole.left(whole.indexOf("PK\x01\x02")), Failure::Damaged);
        row("gzip bomb", gzipped(QByteArray(16 * 1024 * 1024, '1')), Failure::TooLarge);
        row("zip of a bomb's ratio", gzipped(Srt + QByteArray(100'000, ' ')), Failure::TooLarge);
        row("too large", Srt + QByteArray(9 * 1024 * 1024, 'x'), Failure::TooLarge);
    }
    void otherThingsAreRefused()
    {
        QFETCH(const QByteArray, bytes);
        QTEST(static_cast<int>(SubtitleFile::read(bytes, u"eng"_s).failure), "failure");
    }

    void noBytesStopTheProgram()
    {
        QRandomGenerator random(7);
        for (int turn = 0; turn < 300; ++turn) {
            QByteArray bytes = turn % 3 == 0 ? gzipped(Srt) : turn % 3 == 1 ? zipped("a.srt", Srt) : Srt;
            for (int change = 0; change < 5; ++change)
                bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
            const SubtitleFile file = SubtitleFile::read(bytes, u"eng"_s);
            QVERIFY(file.failure == SubtitleFile::Failure::None || file.utf8.isEmpty());
            QVERIFY(file.utf8.size() <= SubtitleUnpacker::MaxBytes * 3);
        }
    }
};

PLOVENDIX_PLAIN_TEST(SubtitleFileTest)
#include "SubtitleFileTest.moc"
