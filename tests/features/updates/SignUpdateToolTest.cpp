#include <features/updates/Appcast.h>
#include <features/updates/AppcastSignature.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// The maker's tool, against the reader of feeds.
class SignUpdateToolTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    QString m_key = m_sandbox.path(u"key"_s);
    QByteArray m_publicKey;

    struct Run
    {
        int exitCode;
        QByteArray output;
        QByteArray complaint;
    };
    static Run run(const QStringList &arguments)
    {
        QProcess tool;
        tool.start(QStringLiteral(PLOVENDIX_SIGN_UPDATE), arguments);
        if (!tool.waitForFinished())
            return {-1, {}, tool.errorString().toUtf8()};
        return {tool.exitCode(), tool.readAllStandardOutput(), tool.readAllStandardError()};
    }

private Q_SLOTS:
    void initTestCase()
    {
        const Run made = run({u"new-key"_s, m_key});
        QCOMPARE(made.exitCode, 0);
        m_publicKey = QByteArray::fromBase64(made.output.trimmed());
        QCOMPARE(m_publicKey.size(), AppcastSignature::KeyBytes);
    }

    void theSecretHalfIsForItsOwnerAlone()
    {
        const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther;
        QVERIFY(!(QFileInfo(m_key).permissions() & others));
        QCOMPARE(run({u"new-key"_s, m_key}).exitCode, 1); // and never overwritten
        QCOMPARE(QByteArray::fromBase64(run({u"public-key"_s, m_key}).output.trimmed()), m_publicKey);
    }

    void whatItSignsTheProgramTakes()
    {
        const QString notes = m_sandbox.writeFile(u"notes"_s, "\r\n<p>One & \"two\"</p>\r\n  Grüße\r\n\r\n");
        const Run made = run({u"item"_s, m_key, u"1.1"_s, u"https://get.example/?a=1&b=2"_s, notes});
        QCOMPARE(made.exitCode, 0);
        const auto items = Appcast::parse("<rss><channel>" + made.output + "</channel></rss>");
        QVERIFY(items);
        const AppcastItem &item = items->items.constFirst();
        QCOMPARE(item.version, u"1.1"_s);
        QCOMPARE(item.link, u"https://get.example/?a=1&b=2"_s);
        QCOMPARE(item.notes, u"<p>One & \"two\"</p>\n  Grüße"_s);
        QVERIFY(AppcastSignature::isValid(u"com.quorvane.Plovendix"_s, item, m_publicKey));
    }

    void itSignsAFeedOfItsItemsAndTheDate()
    {
        const Run one = run({u"item"_s, m_key, u"1.1"_s, u"https://get.example/1.1"_s});
        const Run other = run({u"item"_s, m_key, u"1.2"_s, u"https://get.example/1.2"_s});
        const QString first = m_sandbox.writeFile(u"one"_s, one.output);
        const QString second = m_sandbox.writeFile(u"other"_s, other.output);
        const Run made = run({u"feed"_s, m_key, second, first});
        QCOMPARE(made.complaint, "");
        auto feed = Appcast::parse(made.output);
        QVERIFY(feed);
        QCOMPARE(feed->items.size(), 2);
        QCOMPARE(feed->items.constFirst().version, u"1.2"_s);
        const QString program = u"com.quorvane.Plovendix"_s;
        QVERIFY(AppcastSignature::isValid(program, feed->items.constLast(), m_publicKey));
        QVERIFY(AppcastSignature::isValid(program, *feed, m_publicKey));
        QVERIFY(QDateTime::fromString(feed->date, Qt::ISODate).isValid());
        QVERIFY(feed->date.endsWith(u'Z'));
        AppcastFeed shorter = *feed;
        shorter.items.removeFirst();
        QVERIFY(!AppcastSignature::isValid(program, shorter, m_publicKey));
        QVERIFY(
            AppcastSignature::isValid(program, *Appcast::parse(run({u"feed"_s, m_key}).output), m_publicKey));
    }

    void itSignsNoFeedOfAnothersItems()
    {
        const QString otherKey = m_sandbox.path(u"other-key"_s);
        QCOMPARE(run({u"new-key"_s, otherKey}).exitCode, 0);
        const QString item = m_sandbox.writeFile(
            u"item"_s, run({u"item"_s, otherKey, u"1.1"_s, u"https://get.example/"_s}).output);
        const Run made = run({u"feed"_s, m_key, item});
        QCOMPARE(made.exitCode, 1);
        QVERIFY(made.output.isEmpty());
        QCOMPARE(run({u"feed"_s, m_key, m_key}).exitCode, 1); // no item at all
    }

    void mistakesAreReportedAndNothingIsPrinted_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        const QString link = u"https://get.example/"_s;
        QTest::newRow("nothing") << QStringList{} << 2;
        QTest::newRow("unknown order") << QStringList{u"sign"_s, m_key} << 2;
        QTest::newRow("too few") << QStringList{u"item"_s, m_key, u"1.1"_s} << 2;
        QTest::newRow("no version") << QStringList{u"item"_s, m_key, u"new"_s, link} << 1;
        QTest::newRow("in the clear")
            << QStringList{u"item"_s, m_key, u"1.1"_s, u"http://get.example/"_s} << 1;
        QTest::newRow("no notes") << QStringList{u"item"_s, m_key, u"1.1"_s, link, m_key + u"x"_s} << 1;
        QTest::newRow("no key") << QStringList{u"item"_s, m_key + u"x"_s, u"1.1"_s, link} << 1;
    }
    void mistakesAreReportedAndNothingIsPrinted()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const int, exitCode);
        const Run made = run(arguments);
        QCOMPARE(made.exitCode, exitCode);
        QVERIFY(made.output.isEmpty());
        QVERIFY(!made.complaint.isEmpty());
    }
};

PLOVENDIX_TEST(SignUpdateToolTest)
#include "SignUpdateToolTest.moc"
