#include <features/updates/ReleaseVersion.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class ReleaseVersionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versionsAreCompared_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::addColumn<bool>("isOlder"); // or else the same
        const auto row = [](const char *one, const char *other, bool isOlder) {
            QTest::addRow("%s, %s", one, other)
                << QString::fromLatin1(one) << QString::fromLatin1(other) << isOlder;
        };
        row("1.0", "1.1", true);
        row("1.9", "1.10", true);
        row("1.0", "1.0.1", true);
        row("9.9.9", "10", true);
        row("1.0-beta", "1.0", true);
        row("0.9", "1.0-alpha", true);
        row("1.0-alpha", "1.0-beta", true);
        row("1.0-beta.2", "1.0-beta.10", true);
        row("1.0b2", "1.0b10", true);
        row("1.0-beta", "1.0-beta.1", true);
        row("1.0-RC1", "1.0-rc2", true);
        row("1.0-beta.2", "1.0-beta.x", true);
        row("1.0.9-rc1", "1.0.10-a", true);
        row("1.999999999", "2", true);
        row("1", "1.0.0", false);
        row("1.02", "1.2", false);
        row("1.0b1", "1.0-b1", false);
        row("1.0+5", "1.0+6", false);
        row("0", "0.0", false);
        row("1.0-RC.1", "1.0-rc.1", false);
        row("1.0-rc01", "1.0-rc1", false);
    }
    void versionsAreCompared()
    {
        QFETCH(const QString, one);
        QFETCH(const QString, other);
        QFETCH(const bool, isOlder);
        const auto first = ReleaseVersion::parse(one);
        const auto second = ReleaseVersion::parse(other);
        QVERIFY(first && second);
        QCOMPARE(*first < *second, isOlder);
        QCOMPARE(*second > *first, isOlder);
        QCOMPARE(*first == *second, !isOlder);
    }

    void preReleasesAreKnown()
    {
        QVERIFY(ReleaseVersion::parse(u"1.0-rc1"_s)->isPreRelease());
        QVERIFY(!ReleaseVersion::parse(u"1.0+rc1"_s)->isPreRelease());
        QVERIFY(!ReleaseVersion::parse(u"1.0"_s)->isPreRelease());
    }

    void theseAreNoVersions_data()
    {
        QTest::addColumn<QString>("text");
        for (const QString &text :
             {QString(), u"one"_s, u"1."_s, u".1"_s, u"1..2"_s, u"-1"_s, u"1 0"_s, u"1.0\n"_s, u" 1.0"_s,
              u"v1.0"_s, u"1.0-"_s, u"1.0-1"_s, u"1.1234567890"_s, u"1.2.3.4.5.6.7"_s, u"١.٠"_s,
              u"1.0-"_s + QString(100, u'a')})
            QTest::newRow(text.left(30).toUtf8().toPercentEncoding().constData()) << text;
    }
    void theseAreNoVersions()
    {
        QFETCH(const QString, text);
        QVERIFY(!ReleaseVersion::parse(text));
    }
};

PLOVENDIX_TEST(ReleaseVersionTest)
#include "ReleaseVersionTest.moc"
