#include "MadeUpLocale.h"

#include <model/CountryCodeToName.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class CountryCodeToNameTest final : public QObject
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
        QTest::newRow("upper case") << QVariant(u"FR"_s) << u"France"_s;
        QTest::newRow("lower case") << QVariant(u"fr"_s) << u"France"_s;
        QTest::newRow("mixed case") << QVariant(u"fR"_s) << u"France"_s;
        QTest::newRow("no such country") << QVariant(u"QQ"_s) << u"Unknown"_s;
        QTest::newRow("empty") << QVariant(u""_s) << u"Unknown"_s;
        QTest::newRow("nothing") << QVariant() << u"Unknown"_s;
        QTest::newRow("a number") << QVariant(33) << u"Unknown"_s;
        QTest::newRow("bytes") << QVariant(QByteArray("FR")) << u"Unknown"_s;
    }
    void codeBecomesTheName()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, name);
        QCOMPARE(CountryCodeToName().transformedValue(value), QVariant(name));
    }

    void nameBecomesTheCode_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("code");
        QTest::newRow("France") << QVariant(u"France"_s) << u"FR"_s;
        QTest::newRow("Brazil") << QVariant(u"Brazil"_s) << u"BR"_s;
        QTest::newRow("other case") << QVariant(u"france"_s) << u"US"_s;
        QTest::newRow("Unknown") << QVariant(u"Unknown"_s) << u"US"_s;
        QTest::newRow("nothing") << QVariant() << u"US"_s;
        QTest::newRow("a number") << QVariant(33) << u"US"_s;
    }
    void nameBecomesTheCode()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, code);
        QCOMPARE(CountryCodeToName().reverseTransformedValue(value), QVariant(code));
    }

    void namesAreAskedOfCodesInLowerCase()
    {
        MadeUpLocale locale;
        locale.regions = {{u"xx"_s, u"Lower"_s}, {u"XX"_s, u"Upper"_s}};
        locale.regionCodes = QStringList{u"XX"_s};
        const CountryCodeToName transformer(locale);
        QCOMPARE(transformer.transformedValue(u"XX"_s), QVariant(u"Lower"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Upper"_s), QVariant(u"US"_s));
        QCOMPARE(locale.regionsAsked, (QStringList{u"xx"_s, u"xx"_s}));
    }

    void codeComesBackAsTheSystemListsIt()
    {
        MadeUpLocale locale;
        locale.regions = {{u"xx"_s, u"Somewhere"_s}};
        locale.regionCodes = QStringList{u"Xx"_s};
        QCOMPARE(CountryCodeToName(locale).reverseTransformedValue(u"Somewhere"_s), QVariant(u"Xx"_s));
    }

    void firstOfTwoCodesWithOneNameWins()
    {
        MadeUpLocale locale;
        locale.regions = {{u"xa"_s, u"Twin"_s}, {u"xb"_s, u"Twin"_s}};
        locale.regionCodes = QStringList{u"XB"_s, u"XA"_s};
        QCOMPARE(CountryCodeToName(locale).reverseTransformedValue(u"Twin"_s), QVariant(u"XB"_s));
    }

    void everyLookupAsksForTheLocaleAnew()
    {
        const CountryCodeToName transformer;
        QCOMPARE(transformer.transformedValue(u"DE"_s), QVariant(u"Germany"_s));
        qputenv("LC_ALL", "de_DE.UTF-8");
        QCOMPARE(transformer.transformedValue(u"DE"_s), QVariant(u"Deutschland"_s));
        QCOMPARE(transformer.reverseTransformedValue(u"Deutschland"_s), QVariant(u"DE"_s));
    }

    void givesTextAndReverses()
    {
        QCOMPARE(CountryCodeToName::transformedValueClass(), QMetaType::fromType<QString>());
        QVERIFY(CountryCodeToName().allowsReverseTransformation());
    }
};

PLOVENDIX_TEST(CountryCodeToNameTest)
#include "CountryCodeToNameTest.moc"
