#include <base/FileManager.h>
#include <features/delivery/FileName.h>
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

class FileNameTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastComponentOfAURL_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("name");
        const auto row = [](const QByteArray &url, const QByteArray &name) {
            QTest::newRow(url.constData()) << url << name;
        };
        row("file:///v/My%20film.mkv", "My film.mkv");
        row("file:///v/Disc///", "Disc");
        row("file:///v/..", "..");
        row("file:///v%2Fw.mkv", "w.mkv");
        row("file:///v/caf%E9.mkv", "caf\xe9.mkv");
        row("file:///v/50%25%20%231%3F.mkv", "50% #1?.mkv");
        row("file://there/v/a.mkv", "a.mkv");
        row("https://there.example/v/a.mkv?b=c/d.mkv#e/f.mkv", "a.mkv");
        row("https://there.example", "");
        row("file:///", "");
    }
    void lastComponentOfAURL()
    {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, name);
        QCOMPARE(FileName::lastPathComponent(QUrl::fromEncoded(url)), name);
    }

    void onlyTheLastExtensionGoes_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const QByteArray &name, const QByteArray &expected) {
            QTest::addRow("\"%s\"", name.constData()) << name << expected;
        };
        row("a.b.srt", "a.b");
        row(".profile", ".profile");
        row("a.", "a.");
        row("a..srt", "a.");
        row("..", "..");
        row("", "");
    }
    void onlyTheLastExtensionGoes()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, expected);
        QCOMPARE(FileName::deletingPathExtension(name), expected);
    }

    void suggestionIsMadeOfVideoLanguageAndFormat_data()
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
        row("beyond ASCII", "/v/\xc3\xbc\xe6\x97\xa5.mkv", u"JPN"_s, u"srt"_s, u"ü日.jpn.srt"_s);
        row("not UTF-8", "/v/caf\xe9.mkv", u"fre"_s, u"srt"_s, u"caf\uFFFD.fre.srt"_s);
        row("language with a path", "/v/a.mkv", u"../EN"_s, u"srt"_s, u"a...en.srt"_s);
        row("format with a path", "/v/a.mkv", u"en"_s, u"srt/../../x"_s, u"a.en.srt....x"_s);
        row("format with NUL", "/v/a.mkv", u"en"_s, u"s\0rt"_s, u"a.en.srt"_s);
    }
    void suggestionIsMadeOfVideoLanguageAndFormat()
    {
        QFETCH(QByteArray, path);
        QFETCH(QString, language);
        QFETCH(QString, format);
        QFETCH(QString, expected);
        const QUrl video = FileManager::urlFromFileSystemPath(path);
        QCOMPARE(suggestedFileName(video, subtitle(language, format)), expected);
    }

    void suggestionLowersAlikeEverywhereAndNeedsAVideo()
    {
        qputenv("LC_ALL", "tr_TR.UTF-8");
        const QUrl video = FileManager::urlFromFileSystemPath("/v/a.mkv");
        QCOMPARE(suggestedFileName(video, subtitle(u"ITA"_s, u"SMI"_s)), u"a.ita.smi"_s);
        QCOMPARE(suggestedFileName(std::nullopt, subtitle(u"ITA"_s, u"SMI"_s)), std::nullopt);
    }
};

PLOVENDIX_TEST(FileNameTest)
#include "FileNameTest.moc"
