#include "ImportFixture.h"

#include <tests/support/TestMain.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{
constexpr int FilesInFolder = 900;
constexpr int ArchiveMembersCount = 700;
constexpr qint64 Everything = FilesInFolder + ArchiveMembersCount;
int killCount = 4; // "--kills 50" before the test's own arguments asks for more
} // namespace

/// Imports that are killed at any moment: the catalogue stays sound, and the next import goes on.
class CatalogueKillTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;
    qint64 m_most = 0; // subtitles that were seen in the catalogue

    void beginAnew()
    {
        for (const QString &suffix : {QString(), u"-wal"_s, u"-shm"_s})
            QFile::remove(m_fixture->path() + suffix);
        m_most = 0;
    }

    QStringList addCommand(const QString &catalogue) const
    {
        return {u"-q"_s, u"-c"_s, catalogue, u"add"_s, m_fixture->folder()};
    }

    static int run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE), arguments);
        constexpr int WaitLimit = 60'000;
        return process.waitForFinished(WaitLimit) && process.exitStatus() == QProcess::NormalExit
                   ? process.exitCode()
                   : -1;
    }

    static qint64 subtitlesIn(const QString &catalogue)
    {
        QProcess process;
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE), {u"-c"_s, catalogue, u"list"_s});
        process.waitForFinished();
        return process.readAllStandardOutput().count('\n');
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_fixture = std::make_unique<ImportFixture>(m_sandbox, u"kill"_s);
        for (int i = 0; i < FilesInFolder; ++i)
            m_fixture->write(u"%1/Harbour.Lights.%2.2019.en.srt"_s.arg(i % 7).arg(i),
                             ImportFixture::cue(QString::number(i)));
        ImportFixture::Members members;
        for (int i = 0; i < ArchiveMembersCount; ++i)
            members += {u"Night.Ferry.%1.2020.de.srt"_s.arg(i), ImportFixture::cue(QString::number(-i))};
        m_fixture->writeArchive(u"all.zip"_s, members);
    }

    void killedImportIsSoundAndGoesOn()
    {
        // How long it takes undisturbed says when a kill falls into the work.
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(run(addCommand(m_sandbox.path(u"whole.sqlite"_s))), 0);
        const int duration = static_cast<int>(timer.elapsed());

        std::mt19937 random(5);
        std::uniform_int_distribution<int> moment(0, duration);
        int killed = 0;
        int continued = 0;
        for (int round = 0; killed < killCount && round < 4 * killCount; ++round) {
            QProcess import;
            import.start(QStringLiteral(PLOVENDIX_CATALOGUE), addCommand(m_fixture->path()));
            QVERIFY(import.waitForStarted());
            const bool isWhole = import.waitForFinished(moment(random));
            if (!isWhole) {
                import.kill();
                QVERIFY(import.waitForFinished());
                ++killed;
            }
            if (!QFile::exists(m_fixture->path()))
                continue; // killed before there was anything to keep
            QCOMPARE(run({u"-c"_s, m_fixture->path(), u"--check"_s, u"stats"_s}), 0);
            const qint64 now = subtitlesIn(m_fixture->path());
            QVERIFY2(now >= m_most, "what was entered must not be lost");
            continued += !isWhole && now > 0 && m_most > 0 ? 1 : 0;
            m_most = now;
            if (isWhole || now == Everything)
                beginAnew();
        }
        QCOMPARE(killed, killCount);

        QCOMPARE(run(addCommand(m_fixture->path())), 0);
        QCOMPARE(subtitlesIn(m_fixture->path()), Everything);
        QCOMPARE(run({u"-c"_s, m_fixture->path(), u"--check"_s, u"stats"_s}), 0);
        qInfo("%d kills, %d of them of an import that went on; an undisturbed one takes %d ms", killed,
              continued, duration);
    }
};

static int runCatalogueKillTest(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    if (const qsizetype option = arguments.indexOf(u"--kills"_s);
        option > 0 && option + 1 < arguments.size()) {
        killCount = arguments[option + 1].toInt();
        arguments.remove(option, 2);
    }
    QCoreApplication application(argc, argv);
    CatalogueKillTest test;
    return QTest::qExec(&test, arguments);
}
PLOVENDIX_TEST_FUNCTION(CatalogueKillTest, runCatalogueKillTest)
#include "CatalogueKillTest.moc"
