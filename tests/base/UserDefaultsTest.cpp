#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

class UserDefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_path = m_sandbox.path(u"defaults-%1/Plovendix.conf"_s.arg(++m_number)); }

    void storedValueHidesTheRegisteredOneAndOutlivesTheObject()
    {
        UserDefaults defaults(m_path);
        QVERIFY(!defaults.object(u"languageCode"_s).isValid());
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}, {u"other"_s, 1}});
        defaults.registerDefaults({{u"other"_s, 2}});
        QCOMPARE(defaults.object(u"languageCode"_s), QVariant(u"de"_s));
        QCOMPARE(defaults.integer(u"other"_s), 2);
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(defaults.object(u"languageCode"_s), QVariant(u"fr"_s));
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().trimmed(), QByteArray("[General]\nlanguageCode=fr"));
        QCOMPARE(UserDefaults(m_path).object(u"languageCode"_s), QVariant(u"fr"_s));
        defaults.removeObject(u"languageCode"_s);
        QVERIFY(!UserDefaults(m_path).object(u"languageCode"_s).isValid());
    }

    void nothingIsWrittenBeforeTheFirstChange()
    {
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        defaults.removeObject(u"languageCode"_s);
        defaults.synchronize();
        QVERIFY(!QFileInfo::exists(QFileInfo(m_path).path()));
    }

    void anotherProcessesChangeIsNotLostByOurs()
    {
        UserDefaults ours(m_path);
        UserDefaults theirs(m_path);
        theirs.setObject(u"theirs"_s, 1);
        ours.setObject(u"ours"_s, 2);
        QCOMPARE(ours.integer(u"theirs"_s), 1);
        const UserDefaults later(m_path);
        QCOMPARE(later.integer(u"theirs"_s), 1);
        QCOMPARE(later.integer(u"ours"_s), 2);
    }

    void booleanIsReadFrom_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("expected");
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("text true") << QVariant(u"true"_s) << true;
        QTest::newRow("text YES") << QVariant(u"YES"_s) << true;
        QTest::newRow("text 1") << QVariant(u"1"_s) << true;
        QTest::newRow("other text") << QVariant(u"perhaps"_s) << false;
        QTest::newRow("empty text") << QVariant(u""_s) << false;
        QTest::newRow("zero") << QVariant(0) << false;
        QTest::newRow("nothing") << QVariant() << false;
    }

    void booleanIsReadFrom()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, expected);
        UserDefaults defaults(m_path);
        defaults.setObject(u"key"_s, value);
        QCOMPARE(defaults.boolean(u"key"_s), expected);
        QCOMPARE(UserDefaults(m_path).boolean(u"key"_s), expected);
    }

    void integerIsReadFrom_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<qlonglong>("expected");
        QTest::newRow("number") << QVariant(86400) << 86400LL;
        QTest::newRow("text") << QVariant(u"86400"_s) << 86400LL;
        QTest::newRow("text with spaces") << QVariant(u" 86400 "_s) << 86400LL;
        QTest::newRow("text with a point") << QVariant(u"3600.0"_s) << 3600LL;
        QTest::newRow("text beyond integers") << QVariant(u"-1e300"_s) << -9'000'000'000'000'000'000LL;
        QTest::newRow("text without a value") << QVariant(u"nan"_s) << 0LL;
        QTest::newRow("true") << QVariant(true) << 1LL;
        QTest::newRow("no number") << QVariant(u"day"_s) << 0LL;
        QTest::newRow("date") << QVariant(QDateTime::currentDateTimeUtc()) << 0LL;
        QTest::newRow("nothing") << QVariant() << 0LL;
    }

    void integerIsReadFrom()
    {
        QFETCH(QVariant, value);
        QFETCH(qlonglong, expected);
        UserDefaults defaults(m_path);
        defaults.setObject(u"key"_s, value);
        QCOMPARE(defaults.integer(u"key"_s), expected);
        QCOMPARE(UserDefaults(m_path).integer(u"key"_s), expected);
    }

    void textIsReadFrom_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("text") << QVariant(u"de"_s) << u"de"_s;
        QTest::newRow("number") << QVariant(86400) << u"86400"_s;
        QTest::newRow("date") << QVariant(QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC))
                              << u"2024-05-01T12:30:00.000Z"_s;
        QTest::newRow("nothing") << QVariant() << QString();
    }

    void textIsReadFrom()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, expected);
        UserDefaults defaults(m_path);
        defaults.setObject(u"key"_s, value);
        QCOMPARE(defaults.string(u"key"_s).value_or(QString()), expected);
        QCOMPARE(defaults.string(u"key"_s).has_value(), !expected.isEmpty());
    }

    void languageCodeFallsBackToEnglish()
    {
        UserDefaults defaults(m_path);
        QCOMPARE(defaults.languageCode(), u"en"_s);
        defaults.registerDefaults({{u"languageCode"_s, u"nds"_s}});
        QCOMPARE(defaults.languageCode(), u"nds"_s);
        defaults.setObject(u"languageCode"_s, u"pb"_s);
        QCOMPARE(defaults.languageCode(), u"pb"_s);
    }

private:
    QString m_path;
    Sandbox m_sandbox;
    int m_number = 0;
};

PLOVENDIX_TEST(UserDefaultsTest)
#include "UserDefaultsTest.moc"
