#include "ImportFixture.h"

#include <tests/support/TestMain.h>

#include <QFile>
#include <QProcess>

#include <csignal>

using namespace Qt::StringLiterals;

/// The command as a person types it.
class CatalogueCommandTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    struct Outcome
    {
        int status = -1;
        QString output;
        QString errors;
    };

    void start(QProcess &process, const QStringList &arguments) const
    {
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE),
                      QStringList{u"-c"_s, m_fixture->path()} + arguments);
    }
    static Outcome outcomeOf(QProcess &process)
    {
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    Outcome run(const QStringList &arguments) const
    {
        QProcess process;
        start(process, arguments);
        return outcomeOf(process);
    }
    qsizetype linesOf(const QStringList &arguments) const { return run(arguments).output.count(u'\n'); }
    void writeMany(int count) const
    {
        for (int i = 0; i < count; ++i)
            m_fixture->write(u"more/Night.Ferry.%1.2020.en.srt"_s.arg(i),
                             ImportFixture::cue(QString::number(i)));
    }

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<ImportFixture>(m_sandbox);
        m_fixture->write(u"Harbour.Lights.2019.1080p.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"Harbour.Lights.2019.720p.de.srt"_s, ImportFixture::cue(u"b"_s));
    }

    void addSearchListRemove()
    {
        const Outcome added = run({u"add"_s, m_fixture->folder()});
        QCOMPARE(added.status, 0);
        QCOMPARE(added.errors, u"2 files, 2 added, 0 known, 0 refused\n"_s);
        QCOMPARE(run({u"-l"_s, u"en"_s, u"search"_s, u"lights"_s, u"harbour"_s}).output,
                 u"Harbour.Lights.2019.1080p\teng\tsrt\tHarbour Lights\t\n"_s);
        QCOMPARE(run({u"search"_s, u"nothing"_s}).status, 1);
        QCOMPARE(linesOf({u"list"_s}), 2);
        QCOMPARE(linesOf({u"-n"_s, u"1"_s, u"list"_s}), 1);
        QCOMPARE(run({u"-l"_s, u"de"_s, u"list"_s}).output,
                 u"Harbour.Lights.2019.720p\tger\tsrt\t%1/Harbour.Lights.2019.720p.de.srt\n"_s.arg(
                     m_fixture->folder()));
        QCOMPARE(run({u"remove"_s, m_fixture->folder()}).output,
                 u"2 removed: %1\n"_s.arg(m_fixture->folder()));
        QCOMPARE(run({u"list"_s}).output, QString());
        QCOMPARE(run({u"vacuum"_s}).status, 0);
    }

    /// File names may hold anything but a slash.
    void namesReachTheTerminalAsPlainText()
    {
        const QString sequence = u"\u001b]0;mine\u0007\u009b2J\u202e"_s;
        m_fixture->write(u"Night"_s + sequence + u".Ferry.2020.en.srt"_s, ImportFixture::cue(u"c"_s));
        m_fixture->write(u"refused"_s + sequence + u".srt"_s, "no subtitle");
        const Outcome added = run({u"add"_s, m_fixture->folder()});
        const Outcome listed = run({u"list"_s});
        const Outcome found = run({u"search"_s, u"ferry"_s});
        const Outcome missing = run({u"add"_s, u"gone"_s + sequence});
        QVERIFY(added.errors.contains(u"/refused]0;mine2J.srt is no subtitle\n"_s));
        QVERIFY(listed.output.contains(u"/Night]0;mine2J.Ferry.2020.en.srt\n"_s));
        QVERIFY(found.output.contains(u"Ferry.2020"_s));
        QVERIFY(missing.errors.contains(u"gone]0;mine2J is not there"_s));
        QString everything;
        for (const Outcome &outcome : {added, listed, found, missing})
            everything += outcome.output + outcome.errors;
        for (const QChar c : everything.remove(u'\n').remove(u'\t'))
            QVERIFY(c.category() != QChar::Other_Control && c.category() != QChar::Other_Format);
    }

    void searchRanksTheVideosOwnReleaseFirst()
    {
        run({u"add"_s, m_fixture->folder()});
        for (const QString &release : {u"Harbour.Lights.2019.720p"_s, u"Harbour.Lights.2019.1080p"_s}) {
            const QString video = m_sandbox.writeFile(release + u".mkv"_s, "short");
            QVERIFY(run({u"search"_s, video}).output.startsWith(release));
            QVERIFY(run({u"search"_s, release}).output.startsWith(release));
        }
    }

    void searchFindsAVideoByItsContent()
    {
        m_fixture->write(u"Harbour.Lights.2019.720p.mkv"_s, QByteArray(150'000, 'v'));
        run({u"add"_s, m_fixture->folder()});
        const QString renamed = m_sandbox.writeFile(u"renamed.mkv"_s, QByteArray(150'000, 'v'));
        QCOMPARE(run({u"-n"_s, u"1"_s, u"search"_s, renamed}).output,
                 u"Harbour.Lights.2019.720p\tger\tsrt\tHarbour Lights\tmatches this file\n"_s);
    }

    void statsCountAndCheck()
    {
        run({u"add"_s, m_fixture->folder()});
        const QString output = run({u"--check"_s, u"stats"_s}).output;
        QVERIFY(output.startsWith(u"catalogue\t%1\nbytes\t"_s.arg(m_fixture->path())));
        QVERIFY2(
            output.endsWith(u"\nsubtitles\t2\nfilms\t1\ntitles\t1\nvideos\t0\nsources\t2\nunfinished\t0\n"
                            "language\teng\t1\nlanguage\tger\t1\nformat\tsrt\t2\ncheck\tsound\n"_s),
            qPrintable(output));
    }

    void statsTellFaults_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::newRow("file") << u"PRAGMA writable_schema = ON;"
                                 "DELETE FROM sqlite_schema WHERE name = 'film_imdb'"_s;
        QTest::newRow("text index") << u"DELETE FROM title_words_data WHERE id > 10"_s;
    }
    void statsTellFaults()
    {
        QFETCH(const QString, damage);
        run({u"add"_s, m_fixture->folder()});
        m_fixture->connection()->exec(damage.toStdString());
        const Outcome outcome = run({u"--check"_s, u"stats"_s});
        QVERIFY(outcome.output.contains(u"\nfault\t"_s) && outcome.output.endsWith(u"check\tdamaged\n"_s));
        QCOMPARE(outcome.status, 1);
        QVERIFY(run({u"vacuum"_s}).errors.contains(u"is damaged: "_s));
    }

    void misuseIsSaid_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("fault");
        const auto row = [](const QStringList &arguments, const char *fault) {
            QTest::newRow(fault) << arguments << QString::fromUtf8(fault);
        };
        row({}, "a command is missing");
        row({u"burn"_s}, "unknown command burn");
        row({u"add"_s}, "add needs an argument");
        row({u"stats"_s, u"x"_s}, "stats takes no argument");
        row({u"-n"_s, u"many"_s, u"list"_s}, "--limit needs a number");
        row({u"-l"_s, u"??"_s, u"list"_s}, "--language needs a code, as \"de\" or \"ger\"");
        row({u"--burn"_s, u"list"_s}, "Unknown option 'burn'.");
    }
    void misuseIsSaid()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, fault);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.errors,
                 u"plovendix-catalogue: %1\nTry 'plovendix-catalogue --help'.\n"_s.arg(fault));
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void outputThatCannotBeWrittenIsAFailure()
    {
        run({u"add"_s, m_fixture->folder()});
        for (const QString &argument : {u"list"_s, u"--help"_s}) {
            QProcess process;
            process.setStandardOutputFile(u"/dev/full"_s);
            start(process, {argument});
            const Outcome outcome = outcomeOf(process);
            QCOMPARE(outcome.status, 1);
            QVERIFY(outcome.errors.contains(u"could not be written"_s));
        }
    }

    void helpNamesEveryCommand()
    {
        const Outcome outcome = run({u"--help"_s});
        QCOMPARE(outcome.status, 0);
        for (const QString &command :
             {u"add"_s, u"remove"_s, u"list"_s, u"search"_s, u"stats"_s, u"vacuum"_s})
            QVERIFY(outcome.output.contains(u"\n  "_s + command + u' '));
    }

    void withoutACatalogueNothingIsMade()
    {
        for (const QString &command : {u"list"_s, u"stats"_s, u"vacuum"_s})
            QCOMPARE(run({command}).status, 1);
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void interruptKeepsWhatWasReadAndGoesOn()
    {
        constexpr int Files = 3000;
        writeMany(Files);
        QProcess process;
        start(process, {u"add"_s, m_fixture->folder()});
        QTRY_VERIFY(QFileInfo(m_fixture->path() + u"-wal"_s).size() > 0); // it listens by now
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        const Outcome outcome = outcomeOf(process);
        QCOMPARE(outcome.status, 130);
        QVERIFY(outcome.errors.contains(u"Stopped."_s));
        QVERIFY(m_fixture->faults().isEmpty());
        const qsizetype before = linesOf({u"list"_s});
        QVERIFY(before > 0 && before < Files + 2);
        QCOMPARE(run({u"-q"_s, u"add"_s, m_fixture->folder()}).status, 0);
        QCOMPARE(linesOf({u"list"_s}), Files + 2);
    }

    void twoImportsAtOnceEnterEverythingOnce()
    {
        constexpr int Files = 400;
        writeMany(Files);
        QProcess one;
        QProcess other;
        start(one, {u"-q"_s, u"add"_s, m_fixture->folder()});
        start(other, {u"-q"_s, u"add"_s, m_fixture->folder()});
        QCOMPARE(outcomeOf(one).status, 0);
        QCOMPARE(outcomeOf(other).status, 0);
        QCOMPARE(linesOf({u"list"_s}), Files + 2);
        QVERIFY(m_fixture->faults().isEmpty());
    }
};

PLOVENDIX_TEST(CatalogueCommandTest)
#include "CatalogueCommandTest.moc"
