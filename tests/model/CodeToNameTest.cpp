#include "MadeUpLocale.h"

#include <model/CodeToName.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class CodeToNameTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void init() { qputenv("LC_ALL", "en_US.UTF-8"); }

    void codeBecomesTheName_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("country");
        const QString unknown = u"Unknown"_s;
        QTest::newRow("both") << QVariant(u"fr"_s) << u"French"_s << u"France"_s;
        QTest::newRow("three letters") << QVariant(u"ast"_s) << u"Asturian"_s << unknown;
        QTest::newRow("upper case") << QVariant(u"BR"_s) << u"Breton"_s << u"Brazil"_s;
        QTest::newRow("Brazilian Portuguese") << QVariant(u"pb"_s) << u"Portuguese (Brazil)"_s << unknown;
        QTest::newRow("the same in upper case") << QVariant(u"PB"_s) << unknown << unknown;
        QTest::newRow("no such code") << QVariant(u"qq"_s) << unknown << unknown;
        QTest::newRow("empty") << QVariant(u""_s) << unknown << unknown;
        QTest::newRow("nothing") << QVariant() << unknown << unknown;
        QTest::newRow("a number") << QVariant(7) << unknown << unknown;
        QTest::newRow("bytes") << QVariant(QByteArray("fr")) << unknown << unknown;
        QTest::newRow("a list of texts") << QVariant(QStringList{u"fr"_s}) << unknown << unknown;
    }
    void codeBecomesTheName()
    {
        QFETCH(QVariant, value);
        QTEST(LanguageCodeToName().transformedValue(value).toString(), "language");
        QTEST(CountryCodeToName().transformedValue(value).toString(), "country");
    }

    void nameBecomesTheCode_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("language");
        QTest::addColumn<QVariant>("country");
        const QVariant us(u"US"_s);
        QTest::newRow("language") << QVariant(u"French"_s) << QVariant(u"fr"_s) << us;
        QTest::newRow("country") << QVariant(u"France"_s) << QVariant() << QVariant(u"FR"_s);
        QTest::newRow("composed") << QVariant(u"Portuguese (Brazil)"_s) << QVariant(u"pb"_s) << us;
        QTest::newRow("other case") << QVariant(u"french"_s) << QVariant() << us;
        QTest::newRow("Unknown") << QVariant(u"Unknown"_s) << QVariant() << us;
        QTest::newRow("nothing") << QVariant() << QVariant(u"en"_s) << us;
        QTest::newRow("a number") << QVariant(7) << QVariant(u"en"_s) << us;
    }
    void nameBecomesTheCode()
    {
        QFETCH(QVariant, value);
        QTEST(LanguageCodeToName().reverseTransformedValue(value), "language");
        QTEST(CountryCodeToName().reverseTransformedValue(value), "country");
    }

    void localeIsNotAskedForBrazilianPortuguese()
    {
        MadeUpLocale locale;
        locale.languages = {{u"pb"_s, u"Brazilian"_s}, {u"pt"_s, u"P"_s}, {u"PB"_s, u"Capital"_s}};
        locale.regions = {{u"br"_s, u"B"_s}};
        const LanguageCodeToName transformer(locale);
        QCOMPARE(transformer.transformedValue(u"pb"_s), QVariant(u"P (B)"_s));
        // Any other spelling goes through the plain lookup.
        QCOMPARE(transformer.transformedValue(u"PB"_s), QVariant(u"Capital"_s));
    }

    void codeComesBackInLowerCaseAndIsLookedUpSo()
    {
        MadeUpLocale locale;
        locale.languages = {{u"xx"_s, u"Lower"_s}, {u"XX"_s, u"Upper"_s}, {u"pt"_s, u"P"_s}};
        locale.regions = {{u"br"_s, u"B"_s}};
        locale.languageCodes = QStringList{u"XX"_s};
        const LanguageCodeToName transformer(locale);
        QCOMPARE(transformer.reverseTransformedValue(u"Lower"_s), QVariant(u"xx"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Upper"_s), QVariant());
    }

    void firstOfTwoCodesWithOneNameWins()
    {
        MadeUpLocale locale;
        locale.languages = locale.regions = {{u"xa"_s, u"Twin"_s}, {u"xb"_s, u"Twin"_s}};
        locale.languageCodes = QStringList{u"xb"_s, u"xa"_s};
        locale.regionCodes = QStringList{u"XB"_s, u"XA"_s};
        QCOMPARE(LanguageCodeToName(locale).reverseTransformedValue(u"Twin"_s), QVariant(u"xb"_s));
        QCOMPARE(CountryCodeToName(locale).reverseTransformedValue(u"Twin"_s), QVariant(u"XB"_s));
    }

    void listedLanguageGoesBeforeTheComposedName()
    {
        MadeUpLocale locale;
        locale.languages = {{u"xa"_s, u"P (B)"_s}, {u"pt"_s, u"P"_s}};
        locale.regions = {{u"br"_s, u"B"_s}};
        locale.languageCodes = QStringList{u"xa"_s};
        QCOMPARE(LanguageCodeToName(locale).reverseTransformedValue(u"P (B)"_s), QVariant(u"xa"_s));
    }

    void missingPartsOfTheComposedNameAreFatal()
    {
        MadeUpLocale locale;
        locale.languages = {{u"fr"_s, u"French"_s}};
        locale.languageCodes = QStringList{u"fr"_s};
        const LanguageCodeToName transformer(locale);
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(transformer.transformedValue(u"pb"_s), FatalFaultCaught);
        QVERIFY_EXCEPTION_THROWN(transformer.reverseTransformedValue(u"nobody's"_s), FatalFaultCaught);
        QCOMPARE(transformer.reverseTransformedValue(u"French"_s), QVariant(u"fr"_s));
    }

    void countriesAreAskedOfCodesInLowerCase()
    {
        MadeUpLocale locale;
        locale.regions = {{u"xx"_s, u"Lower"_s}, {u"XX"_s, u"Upper"_s}};
        locale.regionCodes = QStringList{u"XX"_s};
        const CountryCodeToName transformer(locale);
        QCOMPARE(transformer.transformedValue(u"XX"_s), QVariant(u"Lower"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Upper"_s), QVariant(u"US"_s));
        QCOMPARE(locale.regionsAsked, (QStringList{u"xx"_s, u"xx"_s}));
    }

    void countryComesBackAsTheSystemListsIt()
    {
        MadeUpLocale locale;
        locale.regions = {{u"xx"_s, u"Somewhere"_s}};
        locale.regionCodes = QStringList{u"Xx"_s};
        QCOMPARE(CountryCodeToName(locale).reverseTransformedValue(u"Somewhere"_s), QVariant(u"Xx"_s));
    }

    void everyLookupAsksForTheLocaleAnew()
    {
        const LanguageCodeToName transformer;
        QCOMPARE(transformer.transformedValue(u"fr"_s), QVariant(u"French"_s));
        qputenv("LC_ALL", "de_DE.UTF-8");
        QCOMPARE(transformer.transformedValue(u"fr"_s), QVariant(u"Französisch"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Französisch"_s), QVariant(u"fr"_s));
        QCOMPARE(CountryCodeToName().transformedValue(u"DE"_s), QVariant(u"Deutschland"_s));
        QCOMPARE(CountryCodeToName().reverseTransformedValue(u"Deutschland"_s), QVariant(u"DE"_s));
        MadeUpLocale locale;
        locale.languageCodes = QStringList{u"xa"_s, u"xb"_s, u"xc"_s};
        locale.languages = {{u"xc"_s, u"Last"_s}};
        QCOMPARE(LanguageCodeToName(locale).reverseTransformedValue(u"Last"_s), QVariant(u"xc"_s));
        QCOMPARE(locale.localesTaken, 3);
    }

    void bothGiveTextAndReverse()
    {
        QCOMPARE(CodeToName::transformedValueClass(), QMetaType::fromType<QString>());
        QVERIFY(LanguageCodeToName().allowsReverseTransformation());
        QVERIFY(CountryCodeToName().allowsReverseTransformation());
    }
};

PLOVENDIX_TEST(CodeToNameTest)
#include "CodeToNameTest.moc"
