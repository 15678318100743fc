#include <base/Bundle.h>
#include <base/Locale.h>
#include <model/LanguageCodes.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QLocale>
#include <QTest>

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

/// The conversion by tables that a test writes, and by the one that ships with the program.
class LanguageCodesTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    const LanguageCodes m_shipped{Bundle::main()};

    LanguageCodes codes(const QByteArray &table = SmallTable) const
    {
        m_sandbox.writeFile(TableName, table);
        return LanguageCodes(Bundle(m_sandbox.path(u"bundle"_s)));
    }

private Q_SLOTS:
    void init() { m_sandbox.clearPrintedLines(); }
    void cleanup() { QDir(m_sandbox.path(u"bundle"_s)).removeRecursively(); }

    void codeIsLookedUpAsItIs_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("expected");
        QTest::newRow("entry") << u"de"_s << u"xyz"_s;
        QTest::newRow("the services' own code") << u"pb"_s << u"qrs"_s;
        QTest::newRow("upper case") << u"DE"_s << u"eng"_s;
        QTest::newRow("space before") << u" de"_s << u"eng"_s;
        QTest::newRow("no entry") << u"fr"_s << u"eng"_s;
        QTest::newRow("separator") << u"-"_s << u"eng"_s;
        QTest::newRow("null") << QString() << u"eng"_s;
    }
    void codeIsLookedUpAsItIs()
    {
        QFETCH(QString, code);
        QTEST(codes().iso639_2LanguageCode(code), "expected");
    }

    void malformedResourceIsAnEmptyTable_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray entry = "<key>de</key><string>ger</string>";
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("no property list") << QByteArray("de=ger\n");
        QTest::newRow("a list") << propertyList("<array><string>de</string><string>ger</string></array>");
        for (const QByteArray other : {"<integer>3</integer>", "<true/>", "<array/>", "<dict/>"})
            QTest::newRow(other.constData())
                << propertyList("<dict>" + entry + "<key>fr</key>" + other + "</dict>");
    }
    void malformedResourceIsAnEmptyTable()
    {
        QFETCH(QByteArray, content);
        const LanguageCodes malformed = codes(content);
        QCOMPARE(malformed.iso639_2LanguageCode(u"de"_s), u"eng"_s);
        QCOMPARE(malformed.iso639_2LanguageCode(Locale(u"de_DE"_s)), std::nullopt);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void withoutResourceEveryCodeIsEnglish()
    {
        const LanguageCodes none(Bundle(m_sandbox.path(u"nowhere"_s)));
        QCOMPARE(none.iso639_2LanguageCode(u"de"_s), u"eng"_s);
        QCOMPARE(none.iso639_2LanguageCode(u"pb"_s), u"eng"_s);
        QCOMPARE(none.iso639_2LanguageCode(Locale(u"de_DE"_s)), std::nullopt);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
        QVERIFY(QDir().mkpath(m_sandbox.path(TableName))); // a folder in its place
        const LanguageCodes folder(Bundle(m_sandbox.path(u"bundle"_s)));
        QCOMPARE(folder.iso639_2LanguageCode(u"de"_s), u"eng"_s);
    }

    void localesOwnLanguageIsLookedUpWithoutFallback()
    {
        const LanguageCodes small = codes();
        QCOMPARE(small.iso639_2LanguageCode(Locale(u"de_AT.UTF-8"_s)), u"xyz"_s);
        for (const QString &without : {u"fr_FR"_s, u"C"_s, u"POSIX"_s, QString()})
            QCOMPARE(small.iso639_2LanguageCode(Locale(without)), std::nullopt);
    }

    void tableIsReadOnceForTheProcess()
    {
        QCOMPARE(LanguageCodes::shared().iso639_2LanguageCode(u"de"_s), u"ger"_s);
        const QString folder = Bundle::main().folder();
        Bundle::setMainFolder(m_sandbox.path(u"nowhere"_s));
        QCOMPARE(LanguageCodes::shared().iso639_2LanguageCode(u"de"_s), u"ger"_s);
        Bundle::setMainFolder(folder);
    }

    void shippedTableHasTheServicesOwnCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *code, const char *expected) {
            QTest::newRow(code) << QString::fromLatin1(code) << QString::fromLatin1(expected);
        };
        row("pb", "pob");
        row("pm", "pom");
        row("me", "mne");
        row("ma", "mni");
        row("sy", "syr");
        row("ze", "zhe");
        row("zt", "zht");
        row("ex", "ext");
        row("ea", "spl");
        row("pr", "prs");
        row("sx", "sat");
        row("tp", "tok");
        row("ast", "ast");
        row("fil", "tgl");
        row("iw", "heb");
        row("in", "ind");
        row("ji", "yid");
        row("mo", "rum");
        row("qqq", "eng");
    }
    void shippedTableHasTheServicesOwnCodes()
    {
        QFETCH(QString, code);
        QTEST(m_shipped.iso639_2LanguageCode(code), "expected");
    }

    void twoLetterCodesHaveTheBibliographicForm()
    {
        // The services spell Greek and Serbian in their own way.
        const QHash<QString, QString> renamed = {{u"gre"_s, u"ell"_s}, {u"srp"_s, u"scc"_s}};
        int compared = 0;
        for (int number = QLocale::C + 1; number <= QLocale::LastLanguage; ++number) {
            const auto language = static_cast<QLocale::Language>(number);
            const QString two = QLocale::languageToCode(language, QLocale::ISO639Part1);
            const QString three = QLocale::languageToCode(language, QLocale::ISO639Part2B);
            if (two.isEmpty() || three.isEmpty())
                continue;
            ++compared;
            QCOMPARE(two + u':' + m_shipped.iso639_2LanguageCode(two),
                     two + u':' + renamed.value(three, three));
        }
        QVERIFY2(compared > 150, qPrintable(QString::number(compared)));
    }

    void languagesOfTheLocaleDataHaveEntriesAndThreeLettersStay()
    {
        const QMap<QString, QString> renamed = {
            {u"cnr"_s, u"mne"_s}, {u"fil"_s, u"tgl"_s}, {u"yue"_s, u"zhc"_s}};
        for (const QString &code : Locale::isoLanguageCodes()) {
            const QString three = m_shipped.iso639_2LanguageCode(Locale(code)).value_or(QString());
            QVERIFY2(three.size() == 3, qPrintable(code));
            if (code.size() == 3)
                QCOMPARE(three, renamed.value(code, code));
        }
    }

    void everySpellingGivesTheFamilysCode_data()
    {
        QTest::addColumn<QString>("spelling");
        QTest::addColumn<QString>("code");
        const auto row = [](const char *spelling, const char *code) {
            QTest::newRow(spelling) << QString::fromLatin1(spelling) << QString::fromLatin1(code);
        };
        row("eng", "eng");
        row("ENG", "eng");
        row(" en ", "eng");
        row("en_GB.UTF-8", "eng");
        row("ger", "ger");
        row("deu", "ger");
        row("de", "ger");
        row("de-AT", "ger");
        row("ell", "ell");
        row("gre", "ell");
        row("el", "ell");
        row("scc", "scc");
        row("srp", "scc");
        row("sr-Latn-RS", "scc");
        row("scr", "hrv");
        row("pb", "pob");
        row("pob", "pob");
        row("pt-BR", "pob");
        row("pt_br", "pob");
        row("pt", "por");
        row("pt-PT", "por");
        row("zh-TW", "zht");
        row("zh-Hant-TW", "zht");
        row("zh", "chi");
        row("zho", "chi");
        row("nb", "nob");
        row("iw", "heb");
        row("cnr", "mne");
        row("mo", "rum");
        row("sh", "");
        row("azb", "azb");
        row("zul", "zul");
        row("qqq", "qqq");
        row("", "");
        row("x", "");
        row("english", "");
        row("e!g", "");
        row("..", "");
        // The terminological forms of ISO 639-2.
        for (const char *forms : {"fra:fre", "nld:dut", "ces:cze", "ron:rum", "slk:slo", "sqi:alb", "hye:arm",
                                  "eus:baq", "mya:bur", "kat:geo", "isl:ice", "mkd:mac", "mri:mao", "msa:may",
                                  "fas:per", "bod:tib", "cym:wel"})
            row(QByteArray(forms).left(3).constData(), QByteArray(forms).mid(4).constData());
    }
    void everySpellingGivesTheFamilysCode()
    {
        QFETCH(QString, spelling);
        QTEST(m_shipped.code(spelling), "code");
    }

    void twoLetterCodes()
    {
        QStringList twoLetters;
        for (const char *code : {"ger", "ell", "pob", "rum", "scc", "heb", "qqq"})
            twoLetters += m_shipped.twoLetterCode(QString::fromLatin1(code));
        QCOMPARE(twoLetters, (QStringList{u"de"_s, u"el"_s, u"pb"_s, u"ro"_s, u"sr"_s, u"he"_s, QString()}));
    }

    void namesAreInThePersonsLanguage_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("name");
        QTest::newRow("English") << u"eng"_s << u"en_US"_s << u"English"_s;
        QTest::newRow("in German") << u"eng"_s << u"de_DE"_s << u"Englisch"_s;
        QTest::newRow("with a region") << u"pob"_s << u"en_US"_s << u"Portuguese (Brazil)"_s;
        QTest::newRow("two letters") << u"pb"_s << u"en_US"_s << u"Portuguese (Brazil)"_s;
        QTest::newRow("Latin America") << u"spl"_s << u"en_US"_s << u"Spanish (Latin America)"_s;
        QTest::newRow("three letters of their own") << u"ast"_s << u"en_US"_s << u"Asturian"_s;
        QTest::newRow("no locale") << u"fre"_s << u"C"_s << u"French"_s;
        QTest::newRow("unknown") << u"qqq"_s << u"en_US"_s << u"qqq"_s;
    }
    void namesAreInThePersonsLanguage()
    {
        QFETCH(QString, code);
        QFETCH(QString, locale);
        QTEST(m_shipped.name(code, Locale(locale)), "name");
    }

    void everyCodeHasAName()
    {
        const Locale english(u"en_US"_s);
        for (const char *code : {"pob", "pom", "mne", "ast", "mni", "syr", "zhe", "zht", "spl", "spn", "prs",
                                 "sat", "tet", "azb", "zhc", "ell", "scc", "alb", "rum"}) {
            const QString text = QString::fromLatin1(code);
            QVERIFY2(m_shipped.name(text, english) != text, code);
        }
    }
};

PLOVENDIX_TEST(LanguageCodesTest)
#include "LanguageCodesTest.moc"
