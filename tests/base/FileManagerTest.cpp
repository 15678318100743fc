#include <base/Bundle.h>
#include <base/FileManager.h>
#include <tests/support/FaultyCalls.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

class FileManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pathOfAURL_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("plain") << QByteArray("file:///home/u/A.srt") << QByteArray("/home/u/A.srt");
        QTest::newRow("escaped") << QByteArray("file:///a%20b%23%25%3F.srt") << QByteArray("/a b#%?.srt");
        QTest::newRow("letters") << QByteArray("file:///F%C3%BC%C3%9Fe") << QByteArray("/Füße");
        QTest::newRow("bytes that are no text")
            << QByteArray("file:///f%FCr%FF") << QByteArray("/f\xfcr\xff");
        QTest::newRow("this computer") << QByteArray("file://localhost/a") << QByteArray("/a");
        QTest::newRow("this computer by its name")
            << "file://" + QSysInfo::machineHostName().toLatin1() + "/a" << QByteArray("/a");
        QTest::newRow("folder") << QByteArray("file:///a/b/") << QByteArray("/a/b");
        QTest::newRow("root") << QByteArray("file:///") << QByteArray("/");
        QTest::newRow("another computer") << QByteArray("file://server/a") << QByteArray();
        QTest::newRow("web") << QByteArray("https://example.org/a") << QByteArray();
        QTest::newRow("no scheme") << QByteArray("/a") << QByteArray();
        QTest::newRow("relative") << QByteArray("file:a") << QByteArray();
        QTest::newRow("zero byte") << QByteArray("file:///etc/passwd%00.srt") << QByteArray();
        QTest::newRow("empty") << QByteArray("") << QByteArray();
    }

    void pathOfAURL()
    {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, path);
        QCOMPARE(FileManager::fileSystemPath(QUrl::fromEncoded(url)), path);
    }

    void everyByteSurvivesTheWayThroughAURL()
    {
        for (int byte = 1; byte < 256; ++byte) {
            for (const QByteArray &rest : {QByteArray(), QByteArray("\xA4"), QByteArray("41")}) {
                const QByteArray path = "/a" + QByteArray(1, static_cast<char>(byte)) + rest + "z";
                const QUrl url = FileManager::urlFromFileSystemPath(path);
                QCOMPARE(FileManager::fileSystemPath(url), path);
                QCOMPARE(FileManager::fileSystemPath(QUrl(url.toString(QUrl::FullyEncoded))), path);
            }
        }
        for (const QString &path : {u"/home/u/Füße 100%.srt"_s, u"/a#b?c[d]"_s, u"/"_s})
            QCOMPARE(FileManager::urlFromFileSystemPath(path.toUtf8()), QUrl::fromLocalFile(path));
    }

    void namesForDisplay()
    {
        const auto name = [](const char *url) { return FileManager::displayName(QUrl::fromEncoded(url)); };
        QCOMPARE(name("file:///a/Movie%202019.mkv"), u"Movie 2019.mkv"_s);
        QCOMPARE(name("file:///a/b/"), u"b"_s);
        QCOMPARE(name("file:///a/f%FCr.srt"), u"f\uFFFDr.srt"_s);
        QCOMPARE(name("https://example.org/a"), QString());
        const QString home = QDir::homePath();
        QCOMPARE(FileManager::displayPath(QUrl::fromLocalFile(home + u"/V/a.mkv"_s)), u"~/V/a.mkv"_s);
        QCOMPARE(FileManager::displayPath(QUrl::fromLocalFile(home + u"2/a.mkv"_s)), home + u"2/a.mkv"_s);
    }

    void existingThingsExist()
    {
        FileManager manager;
        const QString file = m_sandbox.writeFile(u"exists/file"_s, "x");
        QVERIFY(manager.fileExists(QUrl::fromLocalFile(file)));
        QVERIFY(manager.fileExists(QUrl::fromLocalFile(m_sandbox.path(u"exists"_s))));
        QVERIFY(manager.fileExists(QUrl::fromLocalFile(m_sandbox.path(u"exists/"_s))));
        QVERIFY(!manager.fileExists(QUrl::fromLocalFile(m_sandbox.path(u"exists/not"_s))));
        QVERIFY(!manager.fileExists(QUrl(u"https://example.org/"_s)));
        QVERIFY(!manager.fileExists(QUrl()));
        QVERIFY(QFile::link(m_sandbox.path(u"nowhere"_s), m_sandbox.path(u"exists/link"_s)));
        QVERIFY(!manager.fileExists(QUrl::fromLocalFile(m_sandbox.path(u"exists/link"_s))));
    }

    void folderIsCreatedWithoutThoseAbove()
    {
        FileManager manager;
        const QUrl deep = QUrl::fromLocalFile(m_sandbox.path(u"created/Plovendix"_s));
        const Result<void> tooEarly = manager.createDirectory(deep);
        QVERIFY(!tooEarly);
        QCOMPARE(tooEarly.error().domain, u"FileManager"_s);
        QCOMPARE(tooEarly.error().code, ENOENT);
        QCOMPARE(tooEarly.error().localizedDescription,
                 u"The folder “Plovendix” could not be created in “%1”: %2."_s.arg(
                     m_sandbox.path(u"created"_s), qt_error_string(ENOENT)));
        QVERIFY(manager.createDirectory(QUrl::fromLocalFile(m_sandbox.path(u"created"_s))));
        QVERIFY(manager.createDirectory(deep));
        const Result<void> again = manager.createDirectory(deep);
        QVERIFY(!again);
        QCOMPARE(again.error().code, EEXIST);
    }

    void otherURLsAreRefused_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("web") << QUrl(u"https://example.org/a"_s);
        QTest::newRow("no scheme") << QUrl(u"/tmp"_s);
        QTest::newRow("another computer") << QUrl(u"file://server/a"_s);
        QTest::newRow("empty") << QUrl();
    }

    void otherURLsAreRefused()
    {
        QFETCH(QUrl, url);
        FileManager manager;
        const QString path = m_sandbox.writeFile(u"own"_s, "x");
        const QUrl own = QUrl::fromLocalFile(path);
        for (const Result<void> &result :
             {manager.moveItem(url, own), manager.moveItem(own, url), manager.moveItemReplacing(url, own),
              manager.moveItemReplacing(own, url), manager.createDirectory(url)}) {
            QVERIFY(!result);
            QCOMPARE(result.error().code, EINVAL);
        }
        QVERIFY(QFileInfo::exists(path));
    }

    void errorIsInThePersonsLanguage()
    {
        m_sandbox.writeFile(u"bundle/de.lproj/Localizable.strings"_s,
                            "<plist version=\"1.0\"><dict>"
                            "<key>“%1$@” could not be moved because it no longer exists.</key>"
                            "<string>„%1$@“ gibt es nicht mehr.</string></dict></plist>");
        const QString before = Bundle::main().folder();
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
        Bundle::main().setPreferredLocalizations({u"de"_s});
        const Result<void> result = FileManager().moveItem(QUrl::fromLocalFile(m_sandbox.path(u"weg.srt"_s)),
                                                           QUrl(u"file:///nowhere/a"_s));
        Bundle::setMainFolder(before);
        QVERIFY(!result);
        QCOMPARE(result.error().localizedDescription, u"„weg.srt“ gibt es nicht mehr."_s);
    }

    void defaultManagerMayBeReplaced()
    {
        class Nowhere final : public FileManager
        {
        public:
            bool fileExists(const QUrl &) const override { return false; }
        };
        const QUrl root(u"file:///"_s);
        QVERIFY(FileManager::defaultManager().fileExists(root));
        FileManager::setDefaultManager(std::make_shared<Nowhere>());
        QVERIFY(!FileManager::defaultManager().fileExists(root));
        FileManager::setDefaultManager({});
        QVERIFY(FileManager::defaultManager().fileExists(root));
    }

    void cleanup()
    {
        QFile::remove(m_sandbox.path(u"xdg_config_home/user-dirs.dirs"_s));
        QDir(m_sandbox.path(u"home/Videos"_s)).removeRecursively();
    }

    void moviesFolderIsReadFromTheDesktopsFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("path"); // below home unless absolute
        QTest::newRow("below home") << QByteArray("XDG_VIDEOS_DIR=\"$HOME/Filme\"\n") << u"Filme"_s;
        QTest::newRow("absolute") << QByteArray("XDG_VIDEOS_DIR=\"/data/films/\"") << u"/data/films"_s;
        QTest::newRow("among others") << QByteArray("# written by a tool\nXDG_MUSIC_DIR=\"$HOME/Music\"\n "
                                                    "XDG_VIDEOS_DIR=\"$HOME/V\"\nXDG_X_DIR=\"$HOME\"\n")
                                      << u"V"_s;
        QTest::newRow("last one counts")
            << QByteArray("XDG_VIDEOS_DIR=\"$HOME/A\"\nXDG_VIDEOS_DIR=\"$HOME/B\"\n") << u"B"_s;
        QTest::newRow("escaped") << QByteArray("XDG_VIDEOS_DIR=\"$HOME/A \\\"b\\\" \\$c\"\n")
                                 << u"A \"b\" $c"_s;
    }

    void moviesFolderIsReadFromTheDesktopsFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, path);
        configure(content);
        QCOMPARE(FileManager().moviesFolder(),
                 path.startsWith(u'/') ? QUrl::fromLocalFile(path) : inHome(path));
    }

    void moviesFolderThatIsTurnedOffIsNone()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"home/Videos"_s)));
        configure("XDG_VIDEOS_DIR=\"$HOME/\"\n");
        QVERIFY(!FileManager().moviesFolder());
        configure("XDG_VIDEOS_DIR=\"$HOME\"\n");
        QVERIFY(!FileManager().moviesFolder());
    }

    void usualMoviesFolderServesWhereNoneIsNamed()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"home/Videos"_s)));
        QCOMPARE(FileManager().moviesFolder(), inHome(u"Videos"_s));
        for (const char *content :
             {"", "XDG_MUSIC_DIR=\"$HOME/Music\"\n", "XDG_VIDEOS_DIR=\"relative\"\n",
              "XDG_VIDEOS_DIR=$HOME/unquoted\n", "#XDG_VIDEOS_DIR=\"/off\"\n", "XDG_VIDEOS_DIR=\"\n"}) {
            configure(content);
            QCOMPARE(FileManager().moviesFolder(), inHome(u"Videos"_s));
        }
    }

    void noMoviesFolderWhereThereIsNone()
    {
        QVERIFY(!FileManager().moviesFolder());
        configure("XDG_MUSIC_DIR=\"$HOME/Music\"\n");
        QVERIFY(!FileManager().moviesFolder());
        m_sandbox.writeFile(u"home/Videos"_s, "a file");
        QVERIFY(!FileManager().moviesFolder());
        QVERIFY(QFile::remove(m_sandbox.path(u"home/Videos"_s)));
    }

private:
    void configure(const QByteArray &content) const
    {
        m_sandbox.writeFile(u"xdg_config_home/user-dirs.dirs"_s, content);
    }
    QUrl inHome(const QString &name) const { return QUrl::fromLocalFile(m_sandbox.path(u"home/"_s + name)); }

    Sandbox m_sandbox;
};

PLOVENDIX_TEST(FileManagerTest)
#include "FileManagerTest.moc"
