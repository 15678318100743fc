#include <features/updates/ReleaseVersion.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class ReleaseVersionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstIsOlder_data()
    {
        QTest::addColumn<QString>("older");
        QTest::addColumn<QString>("newer");
        const QList<QStringList> pairs{{u"1.0"_s, u"1.1"_s},
                                       {u"1.9"_s, u"1.10"_s},
                                       {u"1.0"_s, u"1.0.1"_s},
                                       {u"9.9.9"_s, u"10"_s},
                                       {u"1.0-beta"_s, u"1.0"_s},
                                       {u"0.9"_s, u"1.0-alpha"_s},
                                       {u"1.0-alpha"_s, u"1.0-beta"_s},
                                       {u"1.0-beta.2"_s, u"1.0-beta.10"_s},
                                       {u"1.0b2"_s, u"1.0b10"_s},
                                       {u"1.0-beta"_s, u"1.0-beta.1"_s},
                                       {u"1.0-RC1"_s, u"1.0-rc2"_s},
                                       {u"1.0-beta.2"_s, u"1.0-beta.x"_s},
                                       {u"1.0.9-rc1"_s, u"1.0.10-a"_s},
                                       {u"1.999999999"_s, u"2"_s}};
        for (const QStringList &pair : pairs)
            QTest::addRow("%s < %s", qPrintable(pair[0]), qPrintable(pair[1])) << pair[0] << pair[1];
    }
    void theFirstIsOlder()
    {
        QFETCH(const QString, older);
        QFETCH(const QString, newer);
        const auto one = ReleaseVersion::parse(older);
        const auto other = ReleaseVersion::parse(newer);
        QVERIFY(one && other);
        QVERIFY(*one < *other);
        QVERIFY(*other > *one);
        QVERIFY(!(*one == *other));
    }

    void bothAreTheSame_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::newRow("zeros at the end") << u"1"_s << u"1.0.0"_s;
        QTest::newRow("zeros in front") << u"1.02"_s << u"1.2"_s;
        QTest::newRow("hyphen or none") << u"1.0b1"_s << u"1.0-b1"_s;
        QTest::newRow("what follows a plus") << u"1.0+5"_s << u"1.0+6"_s;
        QTest::newRow("nothing but zeros") << u"0"_s << u"0.0"_s;
        QTest::newRow("letter case") << u"1.0-RC.1"_s << u"1.0-rc.1"_s;
    }
    void bothAreTheSame()
    {
        QFETCH(const QString, one);
        QFETCH(const QString, other);
        QVERIFY(ReleaseVersion::parse(one) == ReleaseVersion::parse(other));
        QVERIFY(ReleaseVersion::parse(one).has_value());
        QVERIFY((*ReleaseVersion::parse(one) <=> *ReleaseVersion::parse(other)) == 0);
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
