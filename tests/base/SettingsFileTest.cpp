#include <base/SettingsFile.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class SettingsFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueReadsBackAsItWas_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("text") << QVariant(u"de"_s);
        QTest::newRow("empty text") << QVariant(u""_s);
        QTest::newRow("text with spaces around") << QVariant(u"  de \t"_s);
        QTest::newRow("text with lines") << QVariant(u"a\nb\r\nc"_s);
        QTest::newRow("text like a number") << QVariant(u"86400"_s);
        QTest::newRow("text like a boolean") << QVariant(u"true"_s);
        QTest::newRow("text like a date") << QVariant(u"2024-05-01T12:30:00Z"_s);
        QTest::newRow("text in quotes") << QVariant(u"\"de\""_s);
        QTest::newRow("one quote") << QVariant(u"\""_s);
        QTest::newRow("separators") << QVariant(u"a,b;c=d#e%f\\g"_s);
        QTest::newRow("letters") << QVariant(u"Größe 映画 🎬"_s);
        QTest::newRow("true") << QVariant(true);
        QTest::newRow("false") << QVariant(false);
        QTest::newRow("number") << QVariant(-86400LL);
        QTest::newRow("largest number") << QVariant(std::numeric_limits<qlonglong>::max());
        QTest::newRow("date") << QVariant(QDateTime(QDate(2024, 5, 1), QTime(12, 30, 15, 250), Qt::UTC));
    }

    void valueReadsBackAsItWas()
    {
        QFETCH(QVariant, value);
        const QByteArray bytes = SettingsFile::changed({}, {{u"key"_s, value}});
        const QVariant read = SettingsFile::values(bytes).value().value(u"key"_s);
        QCOMPARE(read, value);
        QCOMPARE(read.metaType(), value.metaType());
    }

    void valueStandsAsAPersonWouldWriteIt_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("text") << QVariant(u"de"_s) << QByteArray("key=de");
        QTest::newRow("true") << QVariant(true) << QByteArray("key=true");
        QTest::newRow("number") << QVariant(3600) << QByteArray("key=3600");
        QTest::newRow("text of digits") << QVariant(u"3600"_s) << QByteArray("key=\"3600\"");
        QTest::newRow("date") << QVariant(QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC))
                              << QByteArray("key=2024-05-01T12:30:00.000Z");
        QTest::newRow("address") << QVariant(QUrl(u"https://example.org/a?b=c"_s))
                                 << QByteArray("key=https://example.org/a?b=c");
        QTest::newRow("letters") << QVariant(u"Größe"_s) << QByteArray("key=Größe");
    }

    void valueStandsAsAPersonWouldWriteIt()
    {
        QFETCH(QVariant, value);
        QFETCH(QByteArray, line);
        QCOMPARE(SettingsFile::changed({}, {{u"key"_s, value}}).trimmed(), "[General]\n" + line);
    }

    void handwrittenValueIsUnderstood_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("text") << QByteArray("de") << QVariant(u"de"_s);
        QTest::newRow("spaces around the sign") << QByteArray(" de") << QVariant(u"de"_s);
        QTest::newRow("quotes") << QByteArray("\"de\"") << QVariant(u"de"_s);
        QTest::newRow("comma") << QByteArray("a, b") << QVariant(u"a, b"_s);
        QTest::newRow("backslashes") << QByteArray("C:\\Films\\x") << QVariant(u"C:\\Films\\x"_s);
        QTest::newRow("number") << QByteArray("86400") << QVariant(86400LL);
        QTest::newRow("leading zero") << QByteArray("007") << QVariant(u"007"_s);
        QTest::newRow("true") << QByteArray("true") << QVariant(true);
        QTest::newRow("yes is a text") << QByteArray("yes") << QVariant(u"yes"_s);
        QTest::newRow("date with a zone") << QByteArray("2024-05-01T14:30:00+02:00")
                                          << QVariant(QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC));
        QTest::newRow("impossible date")
            << QByteArray("2024-13-01T14:30:00Z") << QVariant(u"2024-13-01T14:30:00Z"_s);
        QTest::newRow("nothing") << QByteArray("") << QVariant(u""_s);
    }

    void handwrittenValueIsUnderstood()
    {
        QFETCH(QByteArray, text);
        QFETCH(QVariant, value);
        const QVariant read = SettingsFile::values("[General]\nkey = " + text + "\n").value().value(u"key"_s);
        QCOMPARE(read, value);
        QCOMPARE(read.metaType(), value.metaType());
    }

    void keysOfAnyTextAreKept()
    {
        QVariantMap values;
        for (const QString &key :
             {u"languageCode"_s, u"a=b"_s, u"[General]"_s, u"a b"_s, u"ключ"_s, u"100%"_s, u"#x"_s})
            values.insert(key, key);
        QCOMPARE(SettingsFile::values(SettingsFile::changed({}, values)), values);
    }

    void commentsAndOtherGroupsSurviveAChange()
    {
        const QByteArray bytes = SettingsFile::changed(
            "# mine\n[General]\n# the language\nlanguageCode=de\nother=1\n\n[Window]\nx=1\n",
            {{u"languageCode"_s, u"fr"_s}});
        QVERIFY(bytes.contains("# mine\n"));
        QVERIFY(bytes.contains("# the language\nlanguageCode=fr\nother=1\n"));
        QVERIFY(bytes.contains("[Window]\nx=1\n"));
        QCOMPARE(SettingsFile::values(bytes)->size(), 2);
    }

    void invalidValueRemovesTheKey()
    {
        const QByteArray after =
            SettingsFile::changed("[General]\na=1\nb=2\n", {{u"a"_s, {}}, {u"never"_s, {}}});
        QCOMPARE(SettingsFile::values(after), (QVariantMap{{u"b"_s, 2LL}}));
    }

    void noBytesAreNoSettings()
    {
        for (const QByteArray bytes : {"", "# only a comment\n", "[Other]\na=1\n"})
            QCOMPARE(SettingsFile::values(bytes), QVariantMap());
    }

    void windowsLineEndsAndByteOrderMarkAreFine()
    {
        QCOMPARE(SettingsFile::values("\xEF\xBB\xBF[General]\r\nlanguageCode=de\r\n"),
                 (QVariantMap{{u"languageCode"_s, u"de"_s}}));
    }

    void junkIsNoSettingsFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("binary") << QByteArray("\x7f\x45\x4c\x46\x02\x01\x00\x00", 8);
        QTest::newRow("zeros") << QByteArray(100, '\0');
        QTest::newRow("zero in a value") << QByteArray("[General]\na=\0b\n", 15);
        QTest::newRow("no UTF-8") << QByteArray("[General]\na=f\xfcr\n");
        QTest::newRow("cut off in a key") << QByteArray("[General]\nlanguageCode=de\nSUEnab");
        QTest::newRow("cut off in the group") << QByteArray("[Gene");
        QTest::newRow("cut off in a character") << QByteArray("[General]\nname=Gr\xC3");
        QTest::newRow("no group") << QByteArray("languageCode=de\n");
        QTest::newRow("another format") << QByteArray("{\"languageCode\": \"de\"}");
    }

    void junkIsNoSettingsFile()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!SettingsFile::values(bytes));
    }

    void sameSpellingIsTheSameSetting()
    {
        QCOMPARE(SettingsFile::spelling(u"86400"_s), SettingsFile::spelling(86400));
        QCOMPARE(SettingsFile::spelling(u"true"_s), SettingsFile::spelling(true));
        QVERIFY(SettingsFile::spelling(u"de"_s) != SettingsFile::spelling(u"DE"_s));
        const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC);
        QCOMPARE(SettingsFile::spelling(noon), SettingsFile::spelling(noon.toOffsetFromUtc(7200)));
    }
};

PLOVENDIX_PLAIN_TEST(SettingsFileTest)
#include "SettingsFileTest.moc"
