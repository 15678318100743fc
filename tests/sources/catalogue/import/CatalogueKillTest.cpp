#include "ImportFixture.h"

#include <tests/support/TestMain.h>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <random>

using namespace Qt::StringLiterals;

/// Imports that are killed at any moment: the catalogue stays sound, and the next import goes on.
class CatalogueKillTest : public QObject
{
    Q_OBJECT

    static constexpr int Files = 900;
    static constexpr int Members = 700; // of an archive
    static constexpr int Kills = 4;

    Sandbox m_sandbox;

    /// Runs the command and gives its output, or fails.
    static QByteArray run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE), arguments);
        constexpr int Limit = 60'000;
        const bool hasEnded = process.waitForFinished(Limit);
        if (!hasEnded || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
            QTest::qFail(qPrintable(arguments.join(u' ')), __FILE__, __LINE__);
        return process.readAllStandardOutput();
    }
    static qint64 subtitlesIn(const QString &catalogue)
    {
        run({u"-c"_s, catalogue, u"--check"_s, u"stats"_s});
        return run({u"-c"_s, catalogue, u"list"_s}).count('\n');
    }

private Q_SLOTS:
    void killedImportIsSoundAndGoesOn()
    {
        const ImportFixture fixture(m_sandbox);
        for (int i = 0; i < Files; ++i)
            fixture.write(u"%1/Harbour.Lights.%2.2019.en.srt"_s.arg(i % 7).arg(i),
                          ImportFixture::cue(QString::number(i)));
        ImportFixture::Members members;
        for (int i = 0; i < Members; ++i)
            members += {u"Night.Ferry.%1.2020.de.srt"_s.arg(i), ImportFixture::cue(QString::number(-i))};
        fixture.writeArchive(u"all.zip"_s, members);
        const auto add = [&](const QString &catalogue) {
            return QStringList{u"-q"_s, u"-c"_s, catalogue, u"add"_s, fixture.folder()};
        };
        // How long it takes undisturbed says when a kill falls into the work.
        QElapsedTimer timer;
        timer.start();
        run(add(m_sandbox.path(u"whole.sqlite"_s)));
        std::mt19937 random(5);
        std::uniform_int_distribution<int> moment(0, static_cast<int>(timer.elapsed()));

        qint64 most = 0; // subtitles that were seen in the catalogue
        int killed = 0;
        for (int round = 0; killed < Kills && round < 4 * Kills; ++round) {
            QProcess import;
            import.start(QStringLiteral(PLOVENDIX_CATALOGUE), add(fixture.path()));
            QVERIFY(import.waitForStarted());
            if (!import.waitForFinished(moment(random))) {
                import.kill();
                QVERIFY(import.waitForFinished());
                ++killed;
            }
            if (!QFile::exists(fixture.path()))
                continue; // killed before there was anything to keep
            const qint64 now = subtitlesIn(fixture.path());
            QVERIFY2(now >= most, "what was entered must not be lost");
            most = now;
            if (now < Files + Members)
                continue;
            for (const QString &part : {QString(), u"-wal"_s, u"-shm"_s})
                QFile::remove(fixture.path() + part);
            most = 0;
        }
        QCOMPARE(killed, Kills);
        run(add(fixture.path()));
        QCOMPARE(subtitlesIn(fixture.path()), Files + Members);
    }
};

PLOVENDIX_TEST(CatalogueKillTest)
#include "CatalogueKillTest.moc"
