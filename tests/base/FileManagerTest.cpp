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
                QVERIFY2(url.isValid(), path.toHex().constData());
                QCOMPARE(FileManager::fileSystemPath(url), path);
                QCOMPARE(FileManager::fileSystemPath(QUrl(url.toString(QUrl::FullyEncoded))), path);
            }
        }
    }

    void urlOfAPathIsTheToolkitsOwn()
    {
        for (const QString &path : {u"/home/u/Füße 100%.srt"_s, u"/a#b?c[d]"_s, u"/"_s, u"/映画/🎬"_s})
            QCOMPARE(FileManager::urlFromFileSystemPath(path.toUtf8()), QUrl::fromLocalFile(path));
    }

    void displayNameOfAURL_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QString>("name");
        QTest::newRow("file") << QByteArray("file:///a/Movie%202019.mkv") << u"Movie 2019.mkv"_s;
        QTest::newRow("folder") << QByteArray("file:///a/b/") << u"b"_s;
        QTest::newRow("no text") << QByteArray("file:///a/f%FCr.srt") << u"f\uFFFDr.srt"_s;
        QTest::newRow("root") << QByteArray("file:///") << u""_s;
        QTest::newRow("not a file") << QByteArray("https://example.org/a") << u""_s;
    }

    void displayNameOfAURL()
    {
        QFETCH(QByteArray, url);
        QFETCH(QString, name);
        QCOMPARE(FileManager::displayName(QUrl::fromEncoded(url)), name);
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
        QCOMPARE(tooEarly.error().code, ENOENT);
        QVERIFY(manager.createDirectory(QUrl::fromLocalFile(m_sandbox.path(u"created"_s))));
        QVERIFY(manager.createDirectory(deep));
        QVERIFY(QFileInfo(deep.toLocalFile()).isDir());
    }

    void folderThatExistsIsAnError()
    {
        FileManager manager;
        const QUrl folder = QUrl::fromLocalFile(m_sandbox.path(u"twice"_s));
        QVERIFY(manager.createDirectory(folder));
        const Result<void> again = manager.createDirectory(folder);
        QVERIFY(!again);
        QCOMPARE(again.error().code, EEXIST);
    }

    void failureToCreateSaysWhatAndWhere()
    {
        const auto calls = std::make_shared<FaultyCalls>();
        calls->failingName = u"makeFolder"_s;
        calls->failure = EROFS;
        const Result<void> result =
            FileManager(calls).createDirectory(QUrl(u"file:///disk/Movies/Plovendix"_s));
        QVERIFY(!result);
        QCOMPARE(result.error().domain, u"FileManager"_s);
        QCOMPARE(result.error().code, EROFS);
        QCOMPARE(result.error().localizedDescription,
                 u"The folder “Plovendix” could not be created in “/disk/Movies”: %1."_s.arg(
                     qt_error_string(EROFS)));
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

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(FileManagerTest)
#include "FileManagerTest.moc"
