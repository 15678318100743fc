#include "MadeUpLocale.h"

#include <base/FatalFault.h>
#include <model/LocaleUtilities.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QMetaProperty>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace
{
const QStringList CommonCodes =
    u"en fr de it nl sv es da pt pb no he ja ar fi el is mt tr hr zh ur hi th ko lt pl hu et lv se fo fa ro ru ga sr sq bg cs sk sl"_s
        .split(u' ');

QStringList codesOf(const QList<Language> &languages)
{
    QStringList codes;
    for (const Language &language : languages)
        codes += language.iso639_1();
    return codes;
}

QStringList namesOf(const QList<Language> &languages)
{
    QStringList names;
    for (const Language &language : languages)
        names += language.name();
    return names;
}

/// A locale with a name for each common language but "pb", and nothing else.
MadeUpLocale localeOfCommonLanguages()
{
    MadeUpLocale locale;
    for (const QString &code : CommonCodes) {
        if (code != u"pb")
            locale.languages[code] = u"name of "_s + code;
    }
    locale.regions[u"br"_s] = u"name of br"_s;
    locale.languageCodes = locale.languages.keys();
    return locale;
}
} // namespace

class LocaleUtilitiesTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void init()
    {
        qputenv("LC_ALL", "en_US.UTF-8");
        m_sandbox.clearPrintedLines();
    }

    void englishListHasCommonLanguagesASeparatorAndAllOthersByName()
    {
        const QList<Language> languages = LocaleUtilities::shared().languages();
        const QStringList firstNames = {
            u"English"_s, u"French"_s,  u"German"_s, u"Italian"_s,    u"Dutch"_s,
            u"Swedish"_s, u"Spanish"_s, u"Danish"_s, u"Portuguese"_s, u"Portuguese (Brazil)"_s};
        QCOMPARE(namesOf(languages).first(10), firstNames);
        QCOMPARE(CommonCodes.size(), 42);
        QCOMPARE(codesOf(languages).first(43), CommonCodes + QStringList{u"-"_s});
        QCOMPARE(languages.at(42).name(), u"-"_s);
        const QList<Language> others = languages.sliced(43);
        QVERIFY(others.size() > 400);
        QCOMPARE(others.first().name(), u"Abkhazian"_s);
        const auto isBefore = [locale = Locale::current()](const Language &a, const Language &b) {
            return locale.compare(a.name(), b.name()) < 0;
        };
        QVERIFY(std::is_sorted(others.begin(), others.end(), isBefore));
        const QStringList codes = codesOf(languages);
        QCOMPARE(QSet<QString>(codes.begin(), codes.end()).size(), codes.size());
    }

    void commonLanguageIsNotRepeatedWhateverItsName()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languages[u"xx"_s] = locale.languages.value(u"en"_s);
        locale.languageCodes = QStringList{u"sl"_s, u"xx"_s, u"en"_s};
        const QList<Language> languages = LocaleUtilities(locale).languages();
        // "xx" bears the name of English, but the code alone decides.
        QCOMPARE(codesOf(languages).sliced(CommonCodes.size()), (QStringList{u"-"_s, u"xx"_s}));
    }

    void separatorIsThereEvenWhenNothingFollows()
    {
        const MadeUpLocale locale = localeOfCommonLanguages();
        const QList<Language> languages = LocaleUtilities(locale).languages();
        QCOMPARE(languages.size(), 43);
        QCOMPARE(languages.last().iso639_1(), u"-"_s);
    }

    void languageWithoutNameIsLeftOutWithALine()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languages.remove(u"mt"_s);
        const QList<Language> common = LocaleUtilities(locale).commonLanguages();
        QCOMPARE(common.size(), 41);
        QVERIFY(!codesOf(common).contains(u"mt"_s));
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"no name found for mt"_s});
    }

    void listedLanguageWithoutNameIsLeftOutSilently()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languageCodes = QStringList{u"xa"_s, u"en"_s, u"xb"_s};
        QCOMPARE(codesOf(LocaleUtilities(locale).allLanguages()), QStringList{u"en"_s});
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void countsArePrintedOneALine()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languages.remove(u"sl"_s);
        locale.languages[u"xx"_s] = u"Xish"_s;
        locale.languageCodes = QStringList{u"en"_s, u"xx"_s, u"de"_s};
        const auto languages = LocaleUtilities(locale).languages();
        QCOMPARE(languages.size(), 43);
        QCOMPARE(m_sandbox.printedLines(), (QStringList{u"no name found for sl"_s, u"3"_s, u"1"_s}));
    }

    void brazilianPortugueseIsComposedFromLanguageAndRegion()
    {
        const MadeUpLocale locale = localeOfCommonLanguages();
        const QList<Language> common = LocaleUtilities(locale).commonLanguages();
        QCOMPARE(common.at(9).iso639_1(), u"pb"_s);
        QCOMPARE(common.at(9).name(), u"name of pt (name of br)"_s);
        QCOMPARE(locale.regionsAsked, QStringList{u"br"_s});
    }

    void localesOwnNameOfBrazilianPortugueseGoesFirst()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languages[u"pb"_s] = u"Brazilian"_s;
        QCOMPARE(LocaleUtilities(locale).commonLanguages().at(9).name(), u"Brazilian"_s);
        QCOMPARE(locale.regionsAsked, QStringList());
    }

    void missingPartsOfBrazilianPortugueseAreFatal_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("region");
        QTest::newRow("no Portuguese") << u"pt"_s << u""_s;
        QTest::newRow("no Brazil") << u""_s << u"br"_s;
    }
    void missingPartsOfBrazilianPortugueseAreFatal()
    {
        QFETCH(QString, language);
        QFETCH(QString, region);
        MadeUpLocale locale = localeOfCommonLanguages();
        locale.languages.remove(language);
        locale.regions.remove(region);
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(static_cast<void>(LocaleUtilities(locale).commonLanguages()),
                                 FatalFaultCaught);
    }

    void namesThatDifferInCaseFollowTheCollation()
    {
        MadeUpLocale locale;
        locale.languages = {{u"x1"_s, u"Zulu"_s},
                            {u"x2"_s, u"Alpha"_s}, // small letters go first, whatever the list's order
                            {u"x3"_s, u"alpha"_s},
                            {u"x4"_s, u"Älpha"_s},
                            {u"x5"_s, u"beta"_s}};
        locale.languageCodes = locale.languages.keys();
        QCOMPARE(namesOf(LocaleUtilities(locale).allLanguages()),
                 (QStringList{u"alpha"_s, u"Alpha"_s, u"Älpha"_s, u"beta"_s, u"Zulu"_s}));
    }

    void identicalNamesKeepTheSystemsOrder()
    {
        MadeUpLocale locale;
        QStringList codes;
        for (int number = 39; number >= 0; --number) {
            const QString code = u"x%1"_s.arg(number);
            locale.languages[code] = number % 2 ? u"Odd"_s : u"Even"_s;
            codes += code;
        }
        locale.languageCodes = codes;
        QStringList expected;
        for (const QString &remainder : {u"02468"_s, u"13579"_s}) {
            std::copy_if(codes.begin(), codes.end(), std::back_inserter(expected),
                         [&remainder](const QString &code) { return remainder.contains(code.back()); });
        }
        QCOMPARE(codesOf(LocaleUtilities(locale).allLanguages()), expected);
    }

    void localeIsTakenOnceAList()
    {
        MadeUpLocale locale = localeOfCommonLanguages();
        const LocaleUtilities utilities(locale);
        QCOMPARE(utilities.commonLanguages().size(), 42);
        QCOMPARE(locale.localesTaken, 1);
        QCOMPARE(utilities.allLanguages().size(), 41);
        QCOMPARE(locale.localesTaken, 2);
    }

    void everyCallAsksTheLocaleAnew()
    {
        const QList<Language> english = LocaleUtilities::shared().commonLanguages();
        qputenv("LC_ALL", "de_DE.UTF-8");
        const QList<Language> german = LocaleUtilities::shared().commonLanguages();
        QCOMPARE(german.first().name(), u"Englisch"_s);
        QCOMPARE(german.at(9).name(), u"Portugiesisch (Brasilien)"_s);
        QCOMPARE(english.first().name(), u"English"_s);
    }

    void catalogueIsWholeInEveryLocaleThatMayBeSet_data()
    {
        QTest::addColumn<QByteArray>("locale");
        for (const char *locale :
             {"C", "POSIX", "C.UTF-8", "ja_JP.UTF-8", "oc_FR.UTF-8", "li_NL", "nds_DE.UTF-8", "xx_YY", "%%%"})
            QTest::newRow(locale) << QByteArray(locale);
    }
    void catalogueIsWholeInEveryLocaleThatMayBeSet()
    {
        QFETCH(QByteArray, locale);
        qputenv("LC_ALL", locale);
        const QList<Language> languages = LocaleUtilities::shared().languages();
        QVERIFY2(languages.size() > 43, qPrintable(QString::number(languages.size())));
        QVERIFY(codesOf(languages).contains(u"en"_s));
        QVERIFY(codesOf(languages).contains(u"pb"_s));
    }

    void languageIsMadeOnlyWithBothFields()
    {
        QVERIFY(!std::is_default_constructible_v<Language>);
        QVERIFY(!(std::is_constructible_v<Language, QString>));
        QVERIFY((std::is_constructible_v<LocaleUtilities::Language, QString, QString>));
    }

    void languagesAreEqualByCode()
    {
        const Language english(u"English"_s, u"en"_s);
        QVERIFY(english == Language(u"Englisch"_s, u"en"_s));
        QVERIFY(english != Language(u"English"_s, u"EN"_s));
        QVERIFY(english != Language(u"English"_s, u"eng"_s));
    }

    void languageDiffersFromAnyOtherValue()
    {
        const QVariant english = QVariant::fromValue(Language(u"English"_s, u"en"_s));
        QVERIFY(english == QVariant::fromValue(Language(u"Englisch"_s, u"en"_s)));
        QVERIFY(english != QVariant(u"en"_s));
        QVERIFY(english != QVariant());
    }

    void bindingsReadTheFieldsAndCannotWriteThem()
    {
        const Language english(u"English"_s, u"en"_s);
        const QMetaObject &meta = Language::staticMetaObject;
        const QMetaProperty name = meta.property(meta.indexOfProperty("name"));
        const QMetaProperty code = meta.property(meta.indexOfProperty("iso639_1"));
        QCOMPARE(name.readOnGadget(&english), QVariant(u"English"_s));
        QCOMPARE(code.readOnGadget(&english), QVariant(u"en"_s));
        QVERIFY(!name.isWritable());
        QVERIFY(!code.isWritable());
    }
};

PLOVENDIX_TEST(LocaleUtilitiesTest)
#include "LocaleUtilitiesTest.moc"
