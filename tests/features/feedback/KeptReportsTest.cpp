#include <features/feedback/KeptReports.h>
#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

class KeptReportsTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    int m_folders = 0;
    QString m_folder;
    const QDateTime m_date{QDate(2030, 3, 4), QTime(20, 48, 5), Qt::UTC};

    KeptReports kept() const { return KeptReports(m_folder); }
    static FeedbackReport report(const QString &text) { return {text, {{u"a"_s, u"b"_s}}, {}}; }

private Q_SLOTS:
    void init() { m_folder = m_sandbox.path(u"%1/Plovendix/feedback"_s.arg(++m_folders)); }

    void keptReportIsFoundAgain()
    {
        QVERIFY(!kept().oldest());
        const FeedbackReport whole{
            u"It \"works\" é\n😀"_s, {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}}, {u"x"_s, u"y"_s}};
        const auto path = kept().keep(whole, m_date);
        QVERIFY(path);
        QCOMPARE(*path, m_folder + u"/report-20300304-204805.json"_s);
        const auto owner =
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser | QFileDevice::WriteUser;
        QVERIFY(!(QFileInfo(*path).permissions() & ~owner));
        const auto found = kept().oldest();
        QCOMPARE(found->path, *path);
        QCOMPARE(found->report.text, whole.text);
        QCOMPARE(found->report.parameters, whole.parameters);
        QCOMPARE(found->report.log, whole.log);
        kept().remove(*path);
        QVERIFY(!kept().oldest());
        QCOMPARE(KeptReports::standardFolder(),
                 qEnvironmentVariable("XDG_DATA_HOME") + u"/Plovendix/feedback"_s);
    }

    void malformedReportsAreRejected_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *json :
             {"", "text", R"(["text"])", R"({"parameters":{}})", R"({"text":1})", R"({"text":"a")"})
            QTest::newRow(json) << QByteArray(json);
    }
    void malformedReportsAreRejected()
    {
        QFETCH(const QByteArray, json);
        QVERIFY(!FeedbackReport::fromJson(json));
    }

    void oddMembersAreHarmless()
    {
        const auto read = FeedbackReport::fromJson(R"({"text":"t","parameters":[1],"log":{"a":1}})");
        QVERIFY(read);
        QVERIFY(read->parameters.isEmpty());
        QVERIFY(read->log.isEmpty());
    }

    void anotherOfTheSameSecondIsKeptToo()
    {
        QVERIFY(kept().keep(report(u"One"_s), m_date));
        QVERIFY(kept().keep(report(u"Two"_s), m_date));
        QVERIFY(kept().keep(report(u"Three"_s), m_date.addSecs(1)));
        QCOMPARE(QDir(m_folder).entryList(QDir::Files).size(), 3);
        QStringList texts;
        while (const auto next = kept().oldest()) {
            texts += next->report.text;
            kept().remove(next->path);
        }
        QCOMPARE(texts.size(), 3);
        QCOMPARE(texts.constLast(), u"Three"_s);
    }

    void aReportMayReplaceItself()
    {
        const auto path = kept().keep(report(u"One"_s), m_date);
        QCOMPARE(*kept().keep(report(u"Better"_s), m_date.addDays(1), *path), *path);
        QCOMPARE(QDir(m_folder).entryList(QDir::Files).size(), 1);
        QCOMPARE(kept().oldest()->report.text, u"Better"_s);
    }

    void malformedReportsAreSkipped()
    {
        QVERIFY(QDir().mkpath(m_folder));
        const QString below = QDir(m_sandbox.path({})).relativeFilePath(m_folder);
        m_sandbox.writeFile(below + u"/report-1.json"_s, "damaged");
        m_sandbox.writeFile(below + u"/report-2.json"_s,
                            R"({"text":")" + QByteArray(2'000'000, 'x') + R"("})");
        m_sandbox.writeFile(below + u"/notes.txt"_s, R"({"text":"no"})");
        m_sandbox.writeFile(u"elsewhere.json"_s, R"({"text":"no"})");
        QVERIFY(QFile::link(m_sandbox.path(u"elsewhere.json"_s), m_folder + u"/report-0.json"_s));
        QVERIFY(!kept().oldest());
        QVERIFY(kept().keep(report(u"One"_s), m_date));
        QCOMPARE(kept().oldest()->report.text, u"One"_s);
        QCOMPARE(QDir(m_folder).entryList(QDir::Files).size(), 5);
    }

    void fullDiskKeepsTheOldReport_data() { FullDisk::addRows(); }
    void fullDiskKeepsTheOldReport()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        m_folder = disk.path(u"feedback"_s);
        const auto path = kept().keep(report(u"One"_s), m_date);
        QVERIFY(path);
        const QStringList before = disk.files();
        disk.fill();
        const auto over = kept().keep(report(u"Better"_s), m_date, *path);
        QVERIFY(!over);
        QVERIFY(over.error().localizedDescription.endsWith(u"There is not enough free space."_s));
        QVERIFY(!kept().keep(report(u"Two"_s), m_date.addSecs(1)));
        QCOMPARE(disk.files(), before);
        QCOMPARE(kept().oldest()->report.text, u"One"_s);
        disk.makeRoom();
        QVERIFY(kept().keep(report(u"Better"_s), m_date, *path));
        QCOMPARE(kept().oldest()->report.text, u"Better"_s);
    }
};

PLOVENDIX_TEST(KeptReportsTest)
#include "KeptReportsTest.moc"
