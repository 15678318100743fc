#include <base/FileManager.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class MoviesFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QFile::remove(m_sandbox.path(u"xdg_config_home/user-dirs.dirs"_s));
        QDir(m_sandbox.path(u"home/Videos"_s)).removeRecursively();
    }

    void folderIsReadFromTheDesktopsFile_data()
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
        QTest::newRow("letters") << QByteArray("XDG_VIDEOS_DIR=\"$HOME/Vidéos\"\n") << u"Vidéos"_s;
    }

    void folderIsReadFromTheDesktopsFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, path);
        configure(content);
        QCOMPARE(FileManager().moviesFolder(),
                 path.startsWith(u'/') ? QUrl::fromLocalFile(path) : inHome(path));
    }

    void folderThatIsTurnedOffGivesNothing()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"home/Videos"_s)));
        configure("XDG_VIDEOS_DIR=\"$HOME/\"\n");
        QVERIFY(!FileManager().moviesFolder());
        configure("XDG_VIDEOS_DIR=\"$HOME\"\n");
        QVERIFY(!FileManager().moviesFolder());
    }

    void usualFolderServesWhereNoneIsNamed()
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

    void nothingWhereThereIsNone()
    {
        QVERIFY(!FileManager().moviesFolder());
        configure("XDG_MUSIC_DIR=\"$HOME/Music\"\n");
        QVERIFY(!FileManager().moviesFolder());
        m_sandbox.writeFile(u"home/Videos"_s, "a file");
        QVERIFY(!FileManager().moviesFolder());
        QVERIFY(QFile::remove(m_sandbox.path(u"home/Videos"_s)));
    }

    void fileIsReadAnew()
    {
        FileManager manager;
        configure("XDG_VIDEOS_DIR=\"$HOME/A\"\n");
        QCOMPARE(manager.moviesFolder(), inHome(u"A"_s));
        configure("XDG_VIDEOS_DIR=\"$HOME/B\"\n");
        QCOMPARE(manager.moviesFolder(), inHome(u"B"_s));
    }

    void bytesThatAreNoTextSurvive()
    {
        configure("XDG_VIDEOS_DIR=\"/data/Vid\xe9os\"\n");
        QCOMPARE(FileManager::fileSystemPath(*FileManager().moviesFolder()), QByteArray("/data/Vid\xe9os"));
    }

private:
    void configure(const QByteArray &content) const
    {
        m_sandbox.writeFile(u"xdg_config_home/user-dirs.dirs"_s, content);
    }
    QUrl inHome(const QString &name) const { return QUrl::fromLocalFile(m_sandbox.path(u"home/"_s + name)); }

    Sandbox m_sandbox;
};

PLOVENDIX_TEST(MoviesFolderTest)
#include "MoviesFolderTest.moc"
