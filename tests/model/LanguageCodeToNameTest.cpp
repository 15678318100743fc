#include "MadeUpLocale.h"

#include <model/LanguageCodeToName.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

class LanguageCodeToNameTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void init() { qputenv("LC_ALL", "en_US.UTF-8"); }

    void codeBecomesTheName_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("name");
        QTest::newRow("French") << QVariant(u"fr"_s) << u"French"_s;
        QTest::newRow("three letters") << QVariant(u"ast"_s) << u"Asturian"_s;
        QTest::newRow("Brazilian Portuguese") << QVariant(u"pb"_s) << u"Portuguese (Brazil)"_s;
        QTest::newRow("the same in upper case") << QVariant(u"PB"_s) << u"Unknown"_s;
        QTest::newRow("no such language") << QVariant(u"qq"_s) << u"Unknown"_s;
        QTest::newRow("empty") << QVariant(u""_s) << u"Unknown"_s;
        QTest::newRow("nothing") << QVariant() << u"Unknown"_s;
        QTest::newRow("a number") << QVariant(7) << u"Unknown"_s;
        QTest::newRow("bytes") << QVariant(QByteArray("fr")) << u"Unknown"_s;
        QTest::newRow("a date") << QVariant(QDate(2026, 1, 1)) << u"Unknown"_s;
        QTest::newRow("a list of texts") << QVariant(QStringList{u"fr"_s}) << u"Unknown"_s;
    }
    void codeBecomesTheName()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, name);
        QCOMPARE(LanguageCodeToName().transformedValue(value), QVariant(name));
    }

    void nameBecomesTheCode_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("code");
        QTest::newRow("French") << QVariant(u"French"_s) << QVariant(u"fr"_s);
        QTest::newRow("Asturian") << QVariant(u"Asturian"_s) << QVariant(u"ast"_s);
        QTest::newRow("composed name") << QVariant(u"Portuguese (Brazil)"_s) << QVariant(u"pb"_s);
        QTest::newRow("other case") << QVariant(u"french"_s) << QVariant();
        QTest::newRow("Unknown") << QVariant(u"Unknown"_s) << QVariant();
        QTest::newRow("empty") << QVariant(u""_s) << QVariant();
        QTest::newRow("nothing") << QVariant() << QVariant(u"en"_s);
        QTest::newRow("a number") << QVariant(7) << QVariant(u"en"_s);
    }
    void nameBecomesTheCode()
    {
        QFETCH(QVariant, value);
        QFETCH(QVariant, code);
        QCOMPARE(LanguageCodeToName().reverseTransformedValue(value), code);
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
        locale.languages = {{u"xa"_s, u"Twin"_s}, {u"xb"_s, u"Twin"_s}};
        locale.languageCodes = QStringList{u"xb"_s, u"xa"_s};
        QCOMPARE(LanguageCodeToName(locale).reverseTransformedValue(u"Twin"_s), QVariant(u"xb"_s));
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

    void everyLookupAsksForTheLocaleAnew()
    {
        const LanguageCodeToName transformer;
        QCOMPARE(transformer.transformedValue(u"fr"_s), QVariant(u"French"_s));
        qputenv("LC_ALL", "de_DE.UTF-8");
        QCOMPARE(transformer.transformedValue(u"fr"_s), QVariant(u"Französisch"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Französisch"_s), QVariant(u"fr"_s));
        MadeUpLocale locale;
        locale.languageCodes = QStringList{u"xa"_s, u"xb"_s, u"xc"_s};
        locale.languages = {{u"xc"_s, u"Last"_s}};
        QCOMPARE(LanguageCodeToName(locale).reverseTransformedValue(u"Last"_s), QVariant(u"xc"_s));
        QCOMPARE(locale.localesTaken, 3);
    }

    void givesTextAndReverses()
    {
        QCOMPARE(LanguageCodeToName::transformedValueClass(), QMetaType::fromType<QString>());
        QVERIFY(LanguageCodeToName().allowsReverseTransformation());
    }

    void bindingsFindItByItsName()
    {
        ValueTransformer::setValueTransformer(std::make_shared<LanguageCodeToName>(),
                                              u"LanguageCodeToName"_s);
        const auto found = ValueTransformer::forName(u"LanguageCodeToName"_s);
        QVERIFY(found);
        QCOMPARE(found->transformedValue(u"de"_s), QVariant(u"German"_s));
        QCOMPARE(found->reverseTransformedValue(u"German"_s), QVariant(u"de"_s));
        ValueTransformer::setValueTransformer(nullptr, u"LanguageCodeToName"_s);
    }
};

PLOVENDIX_TEST(LanguageCodeToNameTest)
#include "LanguageCodeToNameTest.moc"
