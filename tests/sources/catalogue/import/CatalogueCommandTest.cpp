#include "ImportFixture.h"

#include <tests/support/TestMain.h>

#include <QProcess>
#include <QTest>

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

    Outcome run(const QStringList &arguments) const
    {
        QProcess process;
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE),
                      QStringList{u"-c"_s, m_fixture->path()} + arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private Q_SLOTS:
    void init()
    {
        m_fixture =
            std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentTestFunction()));
        m_fixture->write(u"Harbour.Lights.2019.1080p.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"Harbour.Lights.2019.720p.de.srt"_s, ImportFixture::cue(u"b"_s));
    }

    void addSearchListRemove()
    {
        QCOMPARE(run({u"add"_s, m_fixture->folder()}).status, 0);
        const QString english = u"Harbour.Lights.2019.1080p\teng\tsrt\tHarbour Lights\t\n"_s;
        QCOMPARE(run({u"-l"_s, u"en"_s, u"search"_s, u"lights"_s, u"harbour"_s}).output, english);
        QCOMPARE(run({u"search"_s, u"nothing"_s}).status, 1);
        QCOMPARE(run({u"list"_s}).output.count(u'\n'), 2);
        QCOMPARE(run({u"-n"_s, u"1"_s, u"list"_s}).output.count(u'\n'), 1);
        QVERIFY(run({u"-l"_s, u"de"_s, u"list"_s}).output.contains(u"\tger\tsrt\t"_s + m_fixture->folder()));
        const Outcome removed = run({u"remove"_s, m_fixture->folder()});
        QCOMPARE(removed.output, u"2 removed: %1\n"_s.arg(m_fixture->folder()));
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
        const QString everything = added.output + added.errors + listed.output + listed.errors +
                                   found.output + found.errors + missing.output + missing.errors;
        for (const QChar c : everything) {
            const bool isLayout = c == u'\n' || c == u'\t';
            QVERIFY(isLayout ||
                    (c.category() != QChar::Other_Control && c.category() != QChar::Other_Format));
        }
    }

    void searchRanksTheVideosOwnReleaseFirst()
    {
        run({u"add"_s, m_fixture->folder()});
        for (const QString &release : {u"Harbour.Lights.2019.720p"_s, u"Harbour.Lights.2019.1080p"_s}) {
            const QString video = m_sandbox.writeFile(release + u".mkv"_s, "short");
            QVERIFY(run({u"search"_s, video}).output.startsWith(release));
        }
    }

    void searchFindsAVideoByItsContent()
    {
        m_fixture->write(u"Harbour.Lights.2019.720p.mkv"_s, QByteArray(150'000, 'v'));
        run({u"add"_s, m_fixture->folder()});
        const QString renamed = m_sandbox.writeFile(u"renamed.mkv"_s, QByteArray(150'000, 'v'));
        const QString first = run({u"search"_s, renamed}).output.section(u'\n', 0, 0);
        QCOMPARE(first, u"Harbour.Lights.2019.720p\tger\tsrt\tHarbour Lights\tmatches this file"_s);
    }

    void statsCountAndCheck()
    {
        run({u"add"_s, m_fixture->folder()});
        const QStringList lines = run({u"--check"_s, u"stats"_s}).output.split(u'\n');
        for (const QString &line : {u"subtitles\t2"_s, u"films\t1"_s, u"sources\t2"_s, u"unfinished\t0"_s,
                                    u"language\teng\t1"_s, u"format\tsrt\t2"_s, u"check\tsound"_s})
            QVERIFY2(lines.contains(line), qPrintable(line));
    }

    void misuseIsSaid_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no command") << QStringList();
        QTest::newRow("unknown command") << QStringList{u"burn"_s};
        QTest::newRow("no path") << QStringList{u"add"_s};
        QTest::newRow("a path too many") << QStringList{u"stats"_s, u"x"_s};
        QTest::newRow("no number") << QStringList{u"-n"_s, u"many"_s, u"list"_s};
        QTest::newRow("no language") << QStringList{u"-l"_s, u"??"_s, u"list"_s};
        QTest::newRow("unknown option") << QStringList{u"--burn"_s, u"list"_s};
    }

    void misuseIsSaid()
    {
        QFETCH(QStringList, arguments);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.errors.contains(u"--help"_s));
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void outputThatCannotBeWrittenIsAFailure()
    {
        run({u"add"_s, m_fixture->folder()});
        for (const QStringList &arguments : {QStringList{u"list"_s}, QStringList{u"--help"_s}}) {
            QProcess process;
            process.setStandardOutputFile(u"/dev/full"_s);
            process.start(QStringLiteral(PLOVENDIX_CATALOGUE),
                          QStringList{u"-c"_s, m_fixture->path()} + arguments);
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitCode(), 1);
            QVERIFY(process.readAllStandardError().contains("could not be written"));
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
        for (int i = 0; i < Files; ++i)
            m_fixture->write(u"more/Night.Ferry.%1.2020.en.srt"_s.arg(i),
                             ImportFixture::cue(QString::number(i)));
        QProcess process;
        process.start(QStringLiteral(PLOVENDIX_CATALOGUE),
                      {u"-c"_s, m_fixture->path(), u"add"_s, m_fixture->folder()});
        QTRY_VERIFY(QFile::exists(m_fixture->path())); // from here on it listens within moments
        QTRY_VERIFY(QFile::exists(m_fixture->path() + u"-wal"_s));
        QTRY_VERIFY(QFileInfo(m_fixture->path() + u"-wal"_s).size() > 0);
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 130);
        QVERIFY(process.readAllStandardError().contains("Stopped."));
        QVERIFY(m_fixture->faults().isEmpty());
        const qint64 before = run({u"list"_s}).output.count(u'\n');
        QVERIFY(before > 0 && before < Files + 2);
        QCOMPARE(run({u"-q"_s, u"add"_s, m_fixture->folder()}).status, 0);
        QCOMPARE(run({u"list"_s}).output.count(u'\n'), Files + 2);
    }

    void twoImportsAtOnceEnterEverythingOnce()
    {
        constexpr int Files = 400;
        for (int i = 0; i < Files; ++i)
            m_fixture->write(u"more/Night.Ferry.%1.2020.en.srt"_s.arg(i),
                             ImportFixture::cue(QString::number(i)));
        QProcess one;
        QProcess other;
        const QStringList arguments{u"-q"_s, u"-c"_s, m_fixture->path(), u"add"_s, m_fixture->folder()};
        one.start(QStringLiteral(PLOVENDIX_CATALOGUE), arguments);
        other.start(QStringLiteral(PLOVENDIX_CATALOGUE), arguments);
        QVERIFY(one.waitForFinished() && other.waitForFinished());
        QCOMPARE(one.exitCode(), 0);
        QCOMPARE(other.exitCode(), 0);
        QCOMPARE(run({u"list"_s}).output.count(u'\n'), Files + 2);
        QVERIFY(m_fixture->faults().isEmpty());
    }
};

PLOVENDIX_TEST(CatalogueCommandTest)
#include "CatalogueCommandTest.moc"
