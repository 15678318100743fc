#include <base/FileManager.h>
#include <features/delivery/SuggestedFileName.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
Subtitle subtitle(const QString &language, const QString &format)
{
    Subtitle subtitle;
    subtitle.subLanguageID = language;
    subtitle.subFormat = format;
    return subtitle;
}
} // namespace

class SuggestedFileNameTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameIsMadeOfVideoLanguageAndFormat_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QByteArray &path, const QString &language,
                            const QString &format, const QString &expected) {
            QTest::newRow(name) << path << language << format << expected;
        };
        row("film", "/v/Movie.2019.mkv", u"EN"_s, u"SRT"_s, u"Movie.2019.en.srt"_s);
        row("last extension only", "/v/a.b.mp4", u"pob"_s, u"SRT"_s, u"a.b.pob.srt"_s);
        row("no extension", "/v/Movie", u"ger"_s, u"ass"_s, u"Movie.ger.ass"_s);
        row("hidden", "/v/.movie", u"eng"_s, u"srt"_s, u".movie.eng.srt"_s);
        row("hidden with extension", "/v/.movie.mkv", u"eng"_s, u"srt"_s, u".movie.eng.srt"_s);
        row("dot at the end", "/v/Movie.", u"eng"_s, u"srt"_s, u"Movie..eng.srt"_s);
        row("two dots", "/v/Movie..mkv", u"eng"_s, u"srt"_s, u"Movie..eng.srt"_s);
        row("spaces", "/v/My film, part 2.mkv", u"eng"_s, u"srt"_s, u"My film, part 2.eng.srt"_s);
        row("signs that URLs escape", "/v/50% #1?.mkv", u"eng"_s, u"srt"_s, u"50% #1?.eng.srt"_s);
        row("beyond ASCII", "/v/\xc3\xbc\xe6\x97\xa5.mkv", u"JPN"_s, u"srt"_s, u"ü日.jpn.srt"_s);
        row("not UTF-8", "/v/caf\xe9.mkv", u"fre"_s, u"srt"_s, u"caf\uFFFD.fre.srt"_s);
        row("folder", "/v/Disc.1/", u"eng"_s, u"srt"_s, u"Disc.eng.srt"_s);
        row("language with a path", "/v/a.mkv", u"../EN"_s, u"srt"_s, u"a...en.srt"_s);
        row("format with a path", "/v/a.mkv", u"en"_s, u"srt/../../x"_s, u"a.en.srt....x"_s);
        row("format with NUL", "/v/a.mkv", u"en"_s, u"s\0rt"_s, u"a.en.srt"_s);
    }
    void nameIsMadeOfVideoLanguageAndFormat()
    {
        QFETCH(QByteArray, path);
        QFETCH(QString, language);
        QFETCH(QString, format);
        QFETCH(QString, expected);
        const QUrl video = FileManager::urlFromFileSystemPath(path);
        QCOMPARE(suggestedFileName(video, subtitle(language, format)), expected);
    }

    void withoutVideoThereIsNoName()
    {
        QCOMPARE(suggestedFileName(std::nullopt, subtitle(u"en"_s, u"srt"_s)), std::nullopt);
    }

    void videoElsewhereGivesItsNameAllTheSame()
    {
        const QUrl video(u"https://example.org/films/My%20film.mkv?x=y.z"_s);
        QCOMPARE(suggestedFileName(video, subtitle(u"en"_s, u"srt"_s)), u"My film.en.srt"_s);
    }

    void turkishCapitalsAreLoweredAlikeEverywhere()
    {
        qputenv("LC_ALL", "tr_TR.UTF-8");
        const QUrl video = FileManager::urlFromFileSystemPath("/v/a.mkv");
        QCOMPARE(suggestedFileName(video, subtitle(u"ITA"_s, u"SMI"_s)), u"a.ita.smi"_s);
    }
};

PLOVENDIX_TEST(SuggestedFileNameTest)
#include "SuggestedFileNameTest.moc"
