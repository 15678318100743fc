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
    void variablesOfThePersonAreDropped_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "BROWSER", "LANGUAGE", "https_proxy",
                                 "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "PLOVENDIX_SUBTITLE_API_KEY"})
            QTest::newRow(name) << QByteArray(name);
    }
    void variablesOfThePersonAreDropped()
    {
        QFETCH(const QByteArray, name);
        qputenv(name.constData(), "2");
        const PrivateEnvironment environment;
        QVERIFY(!qEnvironmentVariableIsSet(name.constData()));
    }

    void foldersAreOnesOwnAndEmpty_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME",
                                 "XDG_DATA_DIRS", "XDG_RUNTIME_DIR"})
            QTest::newRow(name) << QByteArray(name);
    }
    void foldersAreOnesOwnAndEmpty()
    {
        QFETCH(const QByteArray, name);
        qputenv(name.constData(), "/usr/share");
        QString folder;
        {
            const PrivateEnvironment environment;
            folder = qEnvironmentVariable(name.constData());
            QVERIFY(folder.startsWith(QDir::tempPath()));
            QVERIFY(QFileInfo(folder).isDir());
            QVERIFY(QDir(folder).isEmpty());
        }
        QVERIFY(!QFileInfo::exists(folder));
    }

    void programsAreFoundAndSeeNoMore()
    {
        qputenv("QT_SCALE_FACTOR", "2");
        const PrivateEnvironment environment;
        QProcess program;
        program.start(u"env"_s, QStringList());
        QVERIFY(program.waitForFinished());
        const QByteArray seen = program.readAllStandardOutput();
        QVERIFY(seen.contains("HOME="));
        QVERIFY(!seen.contains("QT_SCALE_FACTOR"));
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
