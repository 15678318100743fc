#include <base/URLComponents.h>
#include <features/delivery/CompanionDelivery.h>
#include <tests/support/FakeFileManager.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;

namespace
{
/// A temporary home with a Movies folder, a folder of downloads and a request of Tessaly's.
struct Home
{
    Home()
    {
        fs::create_directories(path("Movies").toStdString());
        fs::create_directories(path("downloads").toStdString());
        files.movies = FileManager::urlFromFileSystemPath(path("Movies"));
    }
    ~Home()
    {
        // The temporary folder itself cannot remove names that are not UTF-8.
        std::error_code error;
        fs::remove_all(folder.path().toStdString(), error);
    }

    QByteArray path(const QByteArray &relative) const { return folder.path().toUtf8() + '/' + relative; }
    /// Writes a file below the home, its folder included; the name may hold any bytes.
    QUrl write(const QByteArray &relative, const QByteArray &content = "1\n") const
    {
        const fs::path place(path(relative).toStdString());
        fs::create_directories(place.parent_path());
        std::ofstream(place, std::ios::binary) << content.toStdString();
        return FileManager::urlFromFileSystemPath(path(relative));
    }
    /// The content of a file below the home, or nothing when there is none.
    std::optional<QByteArray> contentOf(const QByteArray &relative) const
    {
        std::ifstream file(path(relative).toStdString(), std::ios::binary);
        if (!file)
            return std::nullopt;
        return QByteArray::fromStdString(std::string(std::istreambuf_iterator<char>(file), {}));
    }
    QList<QByteArray> namesIn(const QByteArray &relative) const
    {
        QList<QByteArray> names;
        std::error_code error;
        for (const fs::directory_entry &entry : fs::directory_iterator(path(relative).toStdString(), error))
            names += QByteArray::fromStdString(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Whether the platform took the reply.
    Result<bool> send(const QUrl &file, const QString &language = u"en"_s, const QString &format = u"srt"_s)
    {
        Subtitle subtitle;
        subtitle.subLanguageID = language;
        subtitle.subFormat = format;
        const auto sent = sendToCompanion(file, subtitle, request, files, workspace);
        return sent ? Result<bool>(sent->isReplyTaken) : Result<bool>(sent.error());
    }
    /// Sends a download of that name and gives the URL that was opened.
    QUrl replyTo(const QByteArray &name)
    {
        const auto sent = send(write("downloads/" + name));
        return sent && *sent && workspace.opened.size() == 1 ? workspace.opened.first() : QUrl();
    }

    QTemporaryDir folder;
    FakeFileManager files;
    FakeWorkspace workspace;
    ExternalRequestInfo request{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
};

#define COMPARE_NO_MOVIES_FOLDER(SENT)                                                                       \
    QVERIFY(!(SENT));                                                                                        \
    QCOMPARE((SENT).error().domain, u"SendSubtitleErrors"_s);                                                \
    QCOMPARE((SENT).error().code, 0)
} // namespace

class CompanionDeliveryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileIsMovedAndTheCompanionTold()
    {
        Home home;
        const auto sent = home.send(home.write("downloads/A.srt"), u"EN"_s, u"SRT"_s);
        QVERIFY(sent);
        QVERIFY(*sent);
        QCOMPARE(home.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
        QCOMPARE(home.contentOf("downloads/A.srt"), std::nullopt);
        QCOMPARE(home.workspace.opened.size(), 1);
        QCOMPARE(home.workspace.opened.first().toEncoded(),
                 "tessaly3://plovendix-file?filepath=" + home.path("Movies/Plovendix/A.en.srt") +
                     "&docid=42");
        QCOMPARE(home.files.calls, u"movies exists create exists replace"_s.split(u' '));
        home.files.calls.clear();
        QVERIFY(home.send(home.write("downloads/B.srt")));
        QCOMPARE(home.files.calls, u"movies exists exists replace"_s.split(u' '));
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
        row("three dots", "...", u"en"_s, u"srt"_s, "....en.srt");
        row("not UTF-8", "caf\xe9.srt", u"fre"_s, u"srt"_s, "caf\xe9.fre.srt");
        row("signs that URLs escape", "50% #1?&=+.srt", u"en"_s, u"srt"_s, "50% #1?&=+.en.srt");
        row("backslash", "..\\..\\a.srt", u"en"_s, u"srt"_s, "..\\..\\a.en.srt");
        row("no language", "A.srt", u""_s, u"SRT"_s, "A.srt");
        row("no format", "A.srt", u"EN"_s, u""_s, "A.en");
        row("language upwards", "A.srt", u"../../EN"_s, u"srt"_s, "A.srt");
        row("format upwards", "A.srt", u"en"_s, u"/../../srt"_s, "A.en");
        row("language with NUL", "A.srt", u"e\0n"_s, u"srt"_s, "A.srt");
        row("language of dots", "A.srt", u".."_s, u"srt"_s, "A....srt");
    }
    void nameIsMadeOfDownloadLanguageAndFormat()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, language);
        QFETCH(QString, format);
        QFETCH(QByteArray, expected);
        Home home;
        QVERIFY(home.send(home.write("downloads/" + file), language, format));
        QCOMPARE(home.namesIn("Movies/Plovendix"), QList<QByteArray>{expected});
        QCOMPARE(home.namesIn("Movies"), QList<QByteArray>{"Plovendix"});
        QCOMPARE(home.namesIn("downloads"), QList<QByteArray>());
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
        Home home;
        QVERIFY(!home.send(QUrl(file), u"/"_s, u"/"_s));
        QCOMPARE(home.files.calls, QStringList());
        QVERIFY(home.workspace.opened.isEmpty());
    }

    void olderFileOfTheSameNameIsReplaced()
    {
        Home home;
        home.write("Movies/Plovendix/A.en.srt", "old");
        home.write("Movies/Plovendix/B.en.srt", "other");
        QVERIFY(home.send(home.write("downloads/A.srt", "new")));
        QCOMPARE(home.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("new"));
        QCOMPARE(home.contentOf("Movies/Plovendix/B.en.srt"), QByteArray("other"));
    }

    void linkOfTheSameNameIsReplacedAndItsTargetSpared()
    {
        Home home;
        home.write("Movies/Plovendix/precious.txt", "precious");
        fs::create_symlink("precious.txt", home.path("Movies/Plovendix/A.en.srt").toStdString());
        QVERIFY(home.send(home.write("downloads/A.srt", "new")));
        QCOMPARE(home.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("new"));
        QCOMPARE(home.contentOf("Movies/Plovendix/precious.txt"), QByteArray("precious"));
    }

    void plainFileInPlaceOfTheFolderMakesTheMoveFail()
    {
        Home home;
        home.write("Movies/Plovendix", "a plain file");
        const auto sent = home.send(home.write("downloads/A.srt"));
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"FileManager"_s);
        QCOMPARE(sent.error().code, ENOTDIR);
        QCOMPARE(home.contentOf("Movies/Plovendix"), QByteArray("a plain file"));
        QCOMPARE(home.contentOf("downloads/A.srt"), QByteArray("1\n"));
        QVERIFY(home.workspace.opened.isEmpty());
    }

    void withoutMoviesFolderItSaysSo()
    {
        Home home;
        home.files.movies = std::nullopt;
        const auto sent = home.send(home.write("downloads/A.srt"));
        COMPARE_NO_MOVIES_FOLDER(sent);
        QCOMPARE(home.files.calls, QStringList{u"movies"_s});
        QCOMPARE(home.contentOf("downloads/A.srt"), QByteArray("1\n"));
    }

    void folderThatCannotBeMadeCountsAsNoMoviesFolder()
    {
        Home home;
        home.files.createError = base::Error{u"FileManager"_s, EACCES, u"No permission"_s};
        const auto sent = home.send(home.write("downloads/A.srt"));
        COMPARE_NO_MOVIES_FOLDER(sent);
        QCOMPARE(home.files.calls, u"movies exists create exists"_s.split(u' '));
        QCOMPARE(home.contentOf("downloads/A.srt"), QByteArray("1\n"));
    }

    void moviesFolderMayEndInASlash()
    {
        Home home;
        home.files.movies = FileManager::urlFromFileSystemPath(home.path("Movies/"));
        QVERIFY(home.replyTo("A.srt").toEncoded().contains("/Movies/Plovendix/A.en.srt&"));
    }

    void valuesSurviveTheReply_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("docID");
        QTest::newRow("ampersand and equals") << "a&docid=1.srt"_ba << u"7&filepath=/etc/passwd"_s;
        QTest::newRow("plus") << "a+b.srt"_ba << u"1+1"_s;
        QTest::newRow("percent") << "100%41.srt"_ba << u"%41%"_s;
        QTest::newRow("number sign") << "#1.srt"_ba << u"#frag"_s;
        QTest::newRow("space and question mark") << "who is it?.srt"_ba << u"a b?"_s;
        QTest::newRow("beyond ASCII") << "\xc3\xbc\xe6\x97\xa5.srt"_ba << u"ü日𝄞"_s;
        QTest::newRow("line break") << "a\nb.srt"_ba << u"1\n2"_s;
        QTest::newRow("empty document") << "A.srt"_ba << u""_s;
    }
    void valuesSurviveTheReply()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, docID);
        Home home;
        home.request = {u"x-player+1.0"_s, docID, u"Unknown"_s}; // a stranger's scheme is used as it is
        const auto parts = URLComponents::fromURL(home.replyTo(name));
        QVERIFY(parts);
        QCOMPARE(parts->scheme, u"x-player+1.0"_s);
        QCOMPARE(parts->host, u"plovendix-file"_s);
        const QByteArray file = home.path("Movies/Plovendix/" + home.namesIn("Movies/Plovendix").value(0));
        const QList<URLQueryItem> items = {{u"filepath"_s, QString::fromUtf8(file)}, {u"docid"_s, docID}};
        QCOMPARE(parts->queryItems, items);
    }

    void nameThatIsNotUTF8IsSpelledByteByByte()
    {
        const QByteArray reply = Home().replyTo("caf\xe9.srt").toEncoded();
        QVERIFY2(reply.endsWith("/Plovendix/caf%E9.en.srt&docid=42"), reply.constData());
    }

    void replyThatCannotBeMadeOrOpenedIsFalse_data()
    {
        QTest::addColumn<QString>("scheme");
        QTest::addColumn<int>("asked");
        QTest::newRow("not taken") << u"tessaly3"_s << 1;
        QTest::newRow("space") << u"tessaly 3"_s << 0;
        QTest::newRow("digit first") << u"3tessaly"_s << 0;
        QTest::newRow("a whole URL") << u"https://example.org/?"_s << 0;
        QTest::newRow("beyond ASCII") << u"tessalü"_s << 0;
        QTest::newRow("NUL") << u"a\0b"_s << 0;
    }
    void replyThatCannotBeMadeOrOpenedIsFalse()
    {
        QFETCH(QString, scheme);
        QFETCH(int, asked);
        Home home;
        home.workspace.takesURLs = false;
        home.request.urlScheme = scheme;
        const auto sent = home.send(home.write("downloads/A.srt"));
        QVERIFY(sent);
        QVERIFY(!*sent);
        QCOMPARE(home.workspace.opened.size(), asked);
        // The file has moved all the same.
        QCOMPARE(home.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
        QCOMPARE(home.contentOf("downloads/A.srt"), std::nullopt);
    }

    void schemesThatAreNoCompanionsAreRefusedUntouched_data()
    {
        QTest::addColumn<QString>("scheme");
        for (const char *scheme : {"http", "https", "HTTPS", "ftp", "file", "smb", "sftp", "javascript",
                                   "data", "mailto", "admin", "Plovendix", "recent"})
            QTest::newRow(scheme) << QString::fromLatin1(scheme);
    }
    void schemesThatAreNoCompanionsAreRefusedUntouched()
    {
        QFETCH(QString, scheme);
        Home home;
        home.request.urlScheme = scheme;
        home.workspace.ownSchemes = QStringList{u"recent"_s};
        const auto sent = home.send(home.write("downloads/A.srt"));
        QCOMPARE(home.workspace.opened, QList<QUrl>());
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"CompanionDelivery"_s);
        QCOMPARE(home.files.calls, QStringList());
        QCOMPARE(home.contentOf("downloads/A.srt"), QByteArray("1\n"));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(CompanionDeliveryTest)
#include "CompanionDeliveryTest.moc"
