#include <base/Bundle.h>
#include <base/Locale.h>
#include <model/LanguageCodeConversion.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QTest>

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
const QString TableName = u"bundle/iso639_1_to_iso639_2.plist"_s;

QByteArray propertyList(const QByteArray &root)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + root + "</plist>\n";
}

const QByteArray SmallTable =
    propertyList("<dict><key>de</key><string>xyz</string><key>pb</key><string>qrs</string></dict>");
} // namespace

class LanguageCodeConversionTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void init()
    {
        QDir(m_sandbox.path(u"bundle"_s)).removeRecursively();
        QVERIFY(QDir().mkpath(m_sandbox.path(u"bundle"_s)));
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
        reloadLanguageCodeTable();
        m_sandbox.clearPrintedLines();
    }

    void codeIsLookedUpAsItIs_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("expected");
        QTest::newRow("entry") << u"de"_s << u"xyz"_s;
        QTest::newRow("the services' own code") << u"pb"_s << u"qrs"_s;
        QTest::newRow("upper case") << u"DE"_s << u"eng"_s;
        QTest::newRow("space before") << u" de"_s << u"eng"_s;
        QTest::newRow("space behind") << u"de "_s << u"eng"_s;
        QTest::newRow("no entry") << u"fr"_s << u"eng"_s;
        QTest::newRow("separator") << u"-"_s << u"eng"_s;
        QTest::newRow("empty") << u""_s << u"eng"_s;
        QTest::newRow("null") << QString() << u"eng"_s;
    }
    void codeIsLookedUpAsItIs()
    {
        QFETCH(QString, code);
        QFETCH(QString, expected);
        m_sandbox.writeFile(TableName, SmallTable);
        QCOMPARE(iso639_2LanguageCode(code), expected);
    }

    void withoutItsEntryBrazilianPortugueseIsSearchedInEnglish()
    {
        m_sandbox.writeFile(TableName, propertyList("<dict><key>de</key><string>ger</string></dict>"));
        QCOMPARE(iso639_2LanguageCode(u"pb"_s), u"eng"_s);
    }

    void withoutResourceEveryCodeIsEnglish()
    {
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
        QCOMPARE(iso639_2LanguageCode(Locale(u"de_DE"_s)), std::nullopt);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void withoutBundleEveryCodeIsEnglish()
    {
        Bundle::setMainFolder(m_sandbox.path(u"nowhere"_s));
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
    }

    void malformedResourceIsAnEmptyTable_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray entry = "<key>de</key><string>ger</string>";
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("no property list") << QByteArray("de=ger\n");
        QTest::newRow("cut") << propertyList("<dict>" + entry).first(90);
        QTest::newRow("a list") << propertyList("<array><string>de</string><string>ger</string></array>");
        QTest::newRow("a text") << propertyList("<string>de</string>");
        QTest::newRow("one number") << propertyList("<dict>" + entry +
                                                    "<key>fr</key><integer>3</integer></dict>");
        QTest::newRow("one truth") << propertyList("<dict>" + entry + "<key>fr</key><true/></dict>");
        QTest::newRow("one list") << propertyList("<dict>" + entry + "<key>fr</key><array/></dict>");
        QTest::newRow("one dictionary") << propertyList("<dict>" + entry + "<key>fr</key><dict/></dict>");
        QTest::newRow("one data") << propertyList("<dict>" + entry + "<key>fr</key><data>ZnJl</data></dict>");
        QTest::newRow("one date") << propertyList("<dict>" + entry +
                                                  "<key>fr</key><date>2026-01-01T00:00:00Z</date></dict>");
    }
    void malformedResourceIsAnEmptyTable()
    {
        QFETCH(QByteArray, content);
        m_sandbox.writeFile(TableName, content);
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
        QCOMPARE(iso639_2LanguageCode(Locale(u"de_DE"_s)), std::nullopt);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void folderInPlaceOfTheResourceIsAnEmptyTable()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(TableName)));
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
    }

    void localesOwnLanguageIsLookedUpWithoutFallback_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("expected"); // null for nothing
        QTest::newRow("entry") << u"de_AT.UTF-8"_s << u"xyz"_s;
        QTest::newRow("no entry") << u"fr_FR"_s << QString();
        QTest::newRow("C") << u"C"_s << QString();
        QTest::newRow("POSIX") << u"POSIX"_s << QString();
        QTest::newRow("empty") << u""_s << QString();
    }
    void localesOwnLanguageIsLookedUpWithoutFallback()
    {
        QFETCH(QString, locale);
        QFETCH(QString, expected);
        m_sandbox.writeFile(TableName, SmallTable);
        const auto code = iso639_2LanguageCode(Locale(locale));
        QCOMPARE(code.has_value(), !expected.isNull());
        QCOMPARE(code.value_or(QString()), expected);
    }

    void tableIsReadOnceForTheProcess()
    {
        const QString path = m_sandbox.writeFile(TableName, SmallTable);
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"xyz"_s);
        m_sandbox.writeFile(TableName, propertyList("<dict><key>de</key><string>new</string></dict>"));
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"xyz"_s);
        QVERIFY(QFile::remove(path));
        QCOMPARE(iso639_2LanguageCode(u"pb"_s), u"qrs"_s);
    }

    void missingTableIsNotLookedForAgain()
    {
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
        m_sandbox.writeFile(TableName, SmallTable);
        QCOMPARE(iso639_2LanguageCode(u"de"_s), u"eng"_s);
    }

    void firstConversionMayComeFromAnyThread()
    {
        m_sandbox.writeFile(TableName, SmallTable);
        std::vector<QString> codes(4);
        std::vector<std::thread> threads;
        for (QString &code : codes)
            threads.emplace_back([&code] { code = iso639_2LanguageCode(u"de"_s); });
        for (std::thread &thread : threads)
            thread.join();
        for (const QString &code : codes)
            QCOMPARE(code, u"xyz"_s);
    }
};

PLOVENDIX_TEST(LanguageCodeConversionTest)
#include "LanguageCodeConversionTest.moc"
