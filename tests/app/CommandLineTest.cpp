#include <app/CommandLine.h>
#include <base/FileManager.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFilesAndURLs_data()
    {
        QTest::addColumn<QByteArray>("argument");
        QTest::addColumn<QByteArray>("encoded");
        QTest::newRow("absolute") << QByteArray("/v/A B.mkv") << QByteArray("file:///v/A%20B.mkv");
        QTest::newRow("relative") << QByteArray("A.mkv") << QByteArray("file:///home/u/A.mkv");
        QTest::newRow("a name like a scheme")
            << QByteArray("a:b.mkv") << QByteArray("file:///home/u/a:b.mkv");
        QTest::newRow("file URL") << QByteArray("file:///v/A.mkv") << QByteArray("file:///v/A.mkv");
        QTest::newRow("short file URL") << QByteArray("file:/v/A.mkv") << QByteArray("file:/v/A.mkv");
        QTest::newRow("request") << QByteArray("plovendix://search?fileurl=file:///v/A.mkv&docid=1")
                                 << QByteArray("plovendix://search?fileurl=file:///v/A.mkv&docid=1");
        QTest::newRow("request without a host") << QByteArray("plovendix:?fileurl=file:///v/A.mkv&docid=1")
                                                << QByteArray("plovendix:?fileurl=file:///v/A.mkv&docid=1");
        QTest::newRow("request with a path alone") << QByteArray("Plovendix:search?fileurl=%2Fv%2FA.mkv")
                                                   << QByteArray("Plovendix:search?fileurl=%2Fv%2FA.mkv");
        QTest::newRow("a single dash") << QByteArray("-") << QByteArray("file:///home/u/-");
    }
    void readsFilesAndURLs()
    {
        QFETCH(QByteArray, argument);
        QFETCH(QByteArray, encoded);
        const CommandLine line = parseCommandLine({argument}, "/home/u");
        QVERIFY(!line.error);
        QCOMPARE(line.uris, QStringList{QString::fromUtf8(encoded)});
    }

    void keepsNamesThatAreNotUtf8()
    {
        const QByteArray name("/v/caf\xe9\n.mkv");
        const CommandLine line = parseCommandLine({name}, "/");
        QCOMPARE(FileManager::fileSystemPath(QUrl(line.uris.first())), name);
    }

    void takesWhatFollowsTheDashesAsNames()
    {
        const CommandLine line = parseCommandLine({"--", "--help"}, "/w");
        QVERIFY(!line.print);
        QCOMPARE(line.uris, QStringList{u"file:///w/--help"_s});
    }

    void knowsHelpAndVersion()
    {
        QVERIFY(parseCommandLine({"--help"}, {}).print->startsWith(u"Usage: plovendix"_s));
        QCOMPARE(*parseCommandLine({"-v"}, {}).print, u"Plovendix 1.0"_s);
    }

    void refusesUnknownOptions()
    {
        QCOMPARE(*parseCommandLine({"--frobnicate"}, {}).error,
                 u"plovendix: unknown option \"--frobnicate\"; try --help"_s);
    }

    void ignoresEmptyArguments() { QVERIFY(parseCommandLine({""}, "/").uris.isEmpty()); }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(CommandLineTest)
#include "CommandLineTest.moc"
