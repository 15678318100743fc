#include "DeliveryFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QTest>

#include <cerrno>
#include <filesystem>
#include <thread>

using namespace Qt::StringLiterals;

/// What ends in the companion folder, and in which order it gets there.
class CompanionDeliveryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileIsMovedAndTheCompanionTold()
    {
        DeliveryFixture fixture;
        const QUrl file = fixture.writeFile("downloads/A.srt", "1\n");
        const auto sent = fixture.send(file, u"EN"_s, u"SRT"_s);
        QVERIFY(sent);
        QVERIFY(*sent);
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
        QCOMPARE(fixture.contentOf("downloads/A.srt"), std::nullopt);
        const QByteArray expected =
            "tessaly3://plovendix-file?filepath=" + fixture.path("Movies/Plovendix/A.en.srt") + "&docid=42";
        QCOMPARE(fixture.workspace.opened.size(), 1);
        QCOMPARE(fixture.workspace.opened.first().toEncoded(), expected);
    }

    void stepsRunInOrder()
    {
        DeliveryFixture fixture;
        const QUrl file = fixture.writeFile("downloads/A.srt", "1\n");
        QVERIFY(fixture.send(file, u"en"_s, u"srt"_s));
        QCOMPARE(fixture.files.calls, u"movies exists create exists replace"_s.split(u' '));
        fixture.files.calls.clear();
        QVERIFY(fixture.send(fixture.writeFile("downloads/B.srt", "2\n"), u"en"_s, u"srt"_s));
        QCOMPARE(fixture.files.calls, u"movies exists exists replace"_s.split(u' '));
    }

    void nameIsMadeOfDownloadLanguageAndFormat_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const QByteArray &file, const QString &language,
                            const QString &format, const QByteArray &expected) {
            QTest::newRow(name) << file << language << format << expected;
        };
        row("download", "Some.Movie.srt", u"EN"_s, u"SRT"_s, "Some.Movie.en.srt");
        row("last extension only", "a.b.c", u"pob"_s, u"ASS"_s, "a.b.pob.ass");
        row("no extension", "Movie", u"en"_s, u"srt"_s, "Movie.en.srt");
        row("hidden", ".movie", u"en"_s, u"srt"_s, ".movie.en.srt");
        row("hidden with extension", ".movie.srt", u"en"_s, u"srt"_s, ".movie.en.srt");
        row("dot at the end", "Movie.", u"en"_s, u"srt"_s, "Movie..en.srt");
        row("three dots", "...", u"en"_s, u"srt"_s, "....en.srt");
        row("not UTF-8", "caf\xe9.srt", u"fre"_s, u"srt"_s, "caf\xe9.fre.srt");
        row("signs that URLs escape", "50% #1?&=+.srt", u"en"_s, u"srt"_s, "50% #1?&=+.en.srt");
        row("percent signs stay", "a%2Fb.srt", u"en"_s, u"srt"_s, "a%2Fb.en.srt");
        row("backslash", "..\\..\\a.srt", u"en"_s, u"srt"_s, "..\\..\\a.en.srt");
        row("no language", "A.srt", u""_s, u"SRT"_s, "A.srt");
        row("no format", "A.srt", u"EN"_s, u""_s, "A.en");
        row("neither", "A.srt", u""_s, u""_s, "A");
        row("language upwards", "A.srt", u"../../EN"_s, u"srt"_s, "A.srt");
        row("format upwards", "A.srt", u"en"_s, u"/../../srt"_s, "A.en");
        row("format in a folder", "A.srt", u"en"_s, u"s/rt"_s, "A.en");
        row("language with NUL", "A.srt", u"e\0n"_s, u"srt"_s, "A.srt");
        row("language of dots", "A.srt", u".."_s, u"srt"_s, "A....srt");
        row("line break", "A\nB.srt", u"en"_s, u"srt"_s, "A\nB.en.srt");
    }
    void nameIsMadeOfDownloadLanguageAndFormat()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, language);
        QFETCH(QString, format);
        QFETCH(QByteArray, expected);
        DeliveryFixture fixture;
        const auto sent = fixture.send(fixture.writeFile("downloads/" + file, "1\n"), language, format);
        QVERIFY(sent);
        QVERIFY(*sent);
        QCOMPARE(fixture.namesIn("Movies/Plovendix"), QList<QByteArray>{expected});
        QCOMPARE(fixture.namesIn("Movies"), QList<QByteArray>{"Plovendix"});
        QCOMPARE(fixture.namesIn("downloads"), QList<QByteArray>());
    }

    void nameThatLeavesTheFolderIsRefusedUntouched_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("parent") << u"file:///d/x/.."_s;
        QTest::newRow("folder") << u"file:///d/x/."_s;
        QTest::newRow("folder with extension") << u"file:///d/x/..srt"_s;
        QTest::newRow("escaped parent") << u"file:///d/x/%2E%2E"_s;
        QTest::newRow("escaped slash before the parent") << u"file:///d/x%2F.."_s;
        QTest::newRow("root") << u"file:///"_s;
        QTest::newRow("NUL") << u"file:///d/x/a%00b.srt"_s;
        QTest::newRow("no file") << u"https://example.org/a.srt"_s;
    }
    void nameThatLeavesTheFolderIsRefusedUntouched()
    {
        QFETCH(QString, file);
        DeliveryFixture fixture;
        fixture.writeFile("Movies/film.mkv", "film");
        QVERIFY(fixture.makeFolder("Movies/Plovendix"));
        fixture.writeFile("Movies/Plovendix/old.srt", "old");
        const auto sent = fixture.send(QUrl(file), u"/"_s, u"/"_s);
        QVERIFY(!sent);
        QCOMPARE(fixture.files.calls, QStringList());
        QCOMPARE(fixture.contentOf("Movies/film.mkv"), QByteArray("film"));
        QCOMPARE(fixture.contentOf("Movies/Plovendix/old.srt"), QByteArray("old"));
        QVERIFY(fixture.workspace.opened.isEmpty());
    }

    void escapedSlashesInTheDownloadsURLGiveTheLastNameOnly()
    {
        DeliveryFixture fixture;
        fixture.writeFile("downloads/evil.srt", "1\n");
        const QByteArray url = "file://" + fixture.path("downloads%2F..%2Fdownloads%2Fevil.srt");
        QVERIFY(fixture.send(QUrl::fromEncoded(url), u"en"_s, u"srt"_s));
        QCOMPARE(fixture.namesIn("Movies/Plovendix"), QList<QByteArray>{"evil.en.srt"});
    }

    void olderFileOfTheSameNameIsReplaced()
    {
        DeliveryFixture fixture;
        QVERIFY(fixture.makeFolder("Movies/Plovendix"));
        fixture.writeFile("Movies/Plovendix/A.en.srt", "old");
        fixture.writeFile("Movies/Plovendix/B.en.srt", "other");
        QVERIFY(fixture.send(fixture.writeFile("downloads/A.srt", "new"), u"en"_s, u"srt"_s));
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("new"));
        QCOMPARE(fixture.contentOf("Movies/Plovendix/B.en.srt"), QByteArray("other"));
    }

    void linkOfTheSameNameIsReplacedAndItsTargetSpared()
    {
        DeliveryFixture fixture;
        QVERIFY(fixture.makeFolder("Movies/Plovendix"));
        fixture.writeFile("Movies/precious.txt", "precious");
        std::filesystem::create_symlink("../precious.txt",
                                        fixture.path("Movies/Plovendix/A.en.srt").toStdString());
        QVERIFY(fixture.send(fixture.writeFile("downloads/A.srt", "new"), u"en"_s, u"srt"_s));
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("new"));
        QCOMPARE(fixture.contentOf("Movies/precious.txt"), QByteArray("precious"));
    }

    void plainFileInPlaceOfTheFolderMakesTheMoveFail()
    {
        DeliveryFixture fixture;
        fixture.writeFile("Movies/Plovendix", "a plain file");
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"FileManager"_s);
        QCOMPARE(sent.error().code, ENOTDIR);
        QCOMPARE(fixture.contentOf("Movies/Plovendix"), QByteArray("a plain file"));
        QCOMPARE(fixture.contentOf("downloads/A.srt"), QByteArray("1\n"));
        QVERIFY(fixture.workspace.opened.isEmpty());
    }

    void withoutMoviesFolderItSaysSo()
    {
        DeliveryFixture fixture;
        fixture.files.movies = std::nullopt;
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"SendSubtitleErrors"_s);
        QCOMPARE(sent.error().code, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder));
        QCOMPARE(fixture.files.calls, QStringList{u"movies"_s});
        QCOMPARE(fixture.contentOf("downloads/A.srt"), QByteArray("1\n"));
    }

    void folderThatCannotBeMadeCountsAsNoMoviesFolder()
    {
        DeliveryFixture fixture;
        fixture.files.createError = base::Error{u"FileManager"_s, EACCES, u"No permission"_s};
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"SendSubtitleErrors"_s);
        QCOMPARE(sent.error().code, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder));
        QCOMPARE(fixture.files.calls, u"movies exists create exists"_s.split(u' '));
    }

    void foldersAboveAreNotMade()
    {
        DeliveryFixture fixture;
        fixture.files.movies = FileManager::urlFromFileSystemPath(fixture.path("Nowhere"));
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"SendSubtitleErrors"_s);
        QVERIFY(!fixture.namesIn("").contains("Nowhere"));
    }

    void moviesFolderMayEndInASlash()
    {
        DeliveryFixture fixture;
        fixture.files.movies = FileManager::urlFromFileSystemPath(fixture.path("Movies/"));
        QVERIFY(fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s));
        QCOMPARE(fixture.namesIn("Movies/Plovendix"), QList<QByteArray>{"A.en.srt"});
        QVERIFY(!fixture.workspace.opened.first().toEncoded().contains("Movies//"));
    }

    void olderFileStaysWhereTheNewOneCannotCome()
    {
        DeliveryFixture fixture;
        QVERIFY(fixture.makeFolder("Movies/Plovendix"));
        fixture.writeFile("Movies/Plovendix/A.en.srt", "old");
        const auto sent = fixture.send(FileManager::urlFromFileSystemPath(fixture.path("downloads/A.srt")),
                                       u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("old"));
    }

    void folderOfTheNameGoesToTheTrash()
    {
        DeliveryFixture fixture;
        QVERIFY(fixture.makeFolder("Movies/Plovendix/A.en.srt"));
        fixture.writeFile("Movies/Plovendix/A.en.srt/kept.txt", "precious");
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "new"), u"en"_s, u"srt"_s);
        QVERIFY(sent);
        QVERIFY(*sent);
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("new"));
        QFile kept(m_sandbox.path(u"xdg_data_home/Trash/files/A.en.srt/kept.txt"_s));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("precious"));
    }

    void failureToMoveIsReportedAndNoReplySent()
    {
        DeliveryFixture fixture;
        fixture.files.moveError = base::Error{u"FileManager"_s, ENOSPC, u"The disk is full."_s};
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().code, ENOSPC);
        QCOMPARE(sent.error().localizedDescription, u"The disk is full."_s);
        QVERIFY(fixture.workspace.opened.isEmpty());
    }

    void missingDownloadIsTheMovesError()
    {
        DeliveryFixture fixture;
        const auto sent = fixture.send(FileManager::urlFromFileSystemPath(fixture.path("downloads/gone.srt")),
                                       u"en"_s, u"srt"_s);
        QVERIFY(!sent);
        QCOMPARE(sent.error().code, ENOENT);
    }

    void itWorksOnTheThreadOfTheDownload()
    {
        DeliveryFixture fixture;
        const QUrl file = fixture.writeFile("downloads/A.srt", "1\n");
        bool sent = false;
        std::thread worker([&] { sent = fixture.send(file, u"en"_s, u"srt"_s).value(); });
        worker.join();
        QVERIFY(sent);
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(CompanionDeliveryTest)
#include "CompanionDeliveryTest.moc"
