#include <tests/support/PrivateEnvironment.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// What the tests themselves run in.
class PrivateEnvironmentTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void variablesAreDroppedAndFoldersEmpty()
    {
        for (const char *name : {"QT_SCALE_FACTOR", "BROWSER", "LANGUAGE", "https_proxy",
                                 "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "PLOVENDIX_SUBTITLE_API_KEY"})
            qputenv(name, "2");
        qputenv("XDG_DATA_DIRS", "/usr/share");
        QString folder;
        {
            const PrivateEnvironment environment;
            QProcess program;
            program.start(u"env"_s, QStringList());
            QVERIFY(program.waitForFinished());
            const QByteArray seen = program.readAllStandardOutput();
            QVERIFY(seen.contains("HOME="));
            QVERIFY2(!seen.contains("=2\n"), seen.constData());
            folder = qEnvironmentVariable("XDG_DATA_DIRS");
            QVERIFY(folder.startsWith(QDir::tempPath()) && QFileInfo(folder).isDir());
            QVERIFY(QDir(folder).isEmpty());
        }
        QVERIFY(!QFileInfo::exists(folder));
    }

    void aTestThatAPersonStartsRunsInOne()
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"QT_SCALE_FACTOR"_s, u"2"_s);
        variables.insert(u"XDG_DATA_DIRS"_s, u"/usr/share"_s);
        variables.remove(u"PLOVENDIX_PRIVATE_ENVIRONMENT"_s);
        QProcess self;
        self.setProcessEnvironment(variables);
        self.start(QCoreApplication::applicationFilePath(),
                   {u"PrivateEnvironmentTest"_s, u"thisTestRunsInOne"_s});
        QVERIFY(self.waitForFinished());
        QVERIFY2(self.exitCode() == 0, self.readAllStandardOutput().constData());
    }
    void thisTestRunsInOne()
    {
        QVERIFY(!qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
        QVERIFY(qEnvironmentVariable("XDG_DATA_DIRS") != u"/usr/share"_s);
    }
};

PLOVENDIX_TEST(PrivateEnvironmentTest)
#include "PrivateEnvironmentTest.moc"
