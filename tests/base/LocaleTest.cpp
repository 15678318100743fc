#include "ScopedVariable.h"

#include <base/Locale.h>

#include <QTest>

#include <tests/support/TestMain.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

class LocaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void currentLocaleFollowsTheVariablesInOrder_data()
    {
        QTest::addColumn<QByteArray>("all");
        QTest::addColumn<QByteArray>("messages");
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<QString>("language");
        QTest::newRow("LC_ALL first")
            << QByteArray("de_DE") << QByteArray("fr_FR") << QByteArray("it_IT") << u"de"_s;
        QTest::newRow("then LC_MESSAGES")
            << QByteArray() << QByteArray("fr_FR") << QByteArray("it_IT") << u"fr"_s;
        QTest::newRow("then LANG") << QByteArray() << QByteArray() << QByteArray("it_IT") << u"it"_s;
        QTest::newRow("nothing set") << QByteArray() << QByteArray() << QByteArray() << QString();
        QTest::newRow("C hides the rest")
            << QByteArray("C") << QByteArray("fr_FR") << QByteArray("it_IT") << QString();
    }

    void currentLocaleFollowsTheVariablesInOrder()
    {
        QFETCH(QByteArray, all);
        QFETCH(QByteArray, messages);
        QFETCH(QByteArray, lang);
        QFETCH(QString, language);
        // Set to nothing, which counts as unset.
        const ScopedVariable first("LC_ALL", all);
        const ScopedVariable second("LC_MESSAGES", messages);
        const ScopedVariable third("LANG", lang);
        const ScopedVariable none("LANGUAGE", "");
        QCOMPARE(Locale::current().languageCode().value_or(QString()), language);
    }

    void languageComesBeforeTheLocale_data()
    {
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QString>("french");
        QTest::newRow("one") << QByteArray("de") << QByteArray("en_US.UTF-8") << u"Französisch"_s;
        QTest::newRow("the first") << QByteArray("es:de") << QByteArray("en_US.UTF-8") << u"francés"_s;
        QTest::newRow("the first with names")
            << QByteArray("xx:12:de_AT") << QByteArray("en_US.UTF-8") << u"Französisch"_s;
        QTest::newRow("English") << QByteArray("en") << QByteArray("de_DE.UTF-8") << u"French"_s;
        QTest::newRow("none with names") << QByteArray("xx") << QByteArray("de_DE.UTF-8") << u"Französisch"_s;
        QTest::newRow("C in the list") << QByteArray("C") << QByteArray("de_DE.UTF-8") << u"Französisch"_s;
        QTest::newRow("empty") << QByteArray("") << QByteArray("de_DE.UTF-8") << u"Französisch"_s;
        QTest::newRow("C ignores it") << QByteArray("de") << QByteArray("C") << u"French"_s;
        QTest::newRow("C with a character set does not")
            << QByteArray("de") << QByteArray("C.UTF-8") << u"Französisch"_s;
    }

    void languageComesBeforeTheLocale()
    {
        QFETCH(QByteArray, language);
        QFETCH(QByteArray, locale);
        QFETCH(QString, french);
        const ScopedVariable first("LANGUAGE", language);
        const ScopedVariable second("LC_ALL", locale);
        QCOMPARE(Locale::current().localizedStringForLanguageCode(u"fr"_s), french);
    }

    void languageCodeOfAnIdentifier_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("code");
        QTest::newRow("language") << u"de"_s << u"de"_s;
        QTest::newRow("with region") << u"de_AT"_s << u"de"_s;
        QTest::newRow("with character set") << u"de_AT.UTF-8"_s << u"de"_s;
        QTest::newRow("with modifier") << u"ca_ES@valencia"_s << u"ca"_s;
        QTest::newRow("with hyphen") << u"pt-BR"_s << u"pt"_s;
        QTest::newRow("three letters") << u"nds_DE"_s << u"nds"_s;
        QTest::newRow("capitals") << u"DE_de"_s << u"de"_s;
        QTest::newRow("character set alone") << u"de.UTF-8"_s << u"de"_s;
        QTest::newRow("C") << u"C"_s << QString();
        QTest::newRow("C with character set") << u"C.UTF-8"_s << QString();
        QTest::newRow("POSIX") << u"POSIX"_s << QString();
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("no code") << u"deutsch"_s << QString();
        QTest::newRow("junk") << u"../..//x"_s << QString();
    }

    void languageCodeOfAnIdentifier()
    {
        QFETCH(QString, identifier);
        QFETCH(QString, code);
        const Locale locale(identifier);
        QCOMPARE(locale.languageCode().value_or(QString()), code);
        QCOMPARE(locale.languageCode().has_value(), !code.isEmpty());
        QCOMPARE(locale.identifier(), identifier);
    }

    void namesAreInTheLocalesLanguage_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("french");
        QTest::addColumn<QString>("brazil");
        QTest::newRow("English") << u"en_US.UTF-8"_s << u"French"_s << u"Brazil"_s;
        QTest::newRow("German") << u"de_DE.UTF-8"_s << u"Französisch"_s << u"Brasilien"_s;
        QTest::newRow("French") << u"fr_FR"_s << u"français"_s << u"Brésil"_s;
        QTest::newRow("Japanese") << u"ja_JP.eucJP"_s << u"フランス語"_s << u"ブラジル"_s;
        QTest::newRow("C") << u"C"_s << u"French"_s << u"Brazil"_s;
        QTest::newRow("POSIX") << u"POSIX"_s << u"French"_s << u"Brazil"_s;
        QTest::newRow("junk") << u"%n%n"_s << u"French"_s << u"Brazil"_s;
    }

    void namesAreInTheLocalesLanguage()
    {
        QFETCH(QString, identifier);
        QFETCH(QString, french);
        QFETCH(QString, brazil);
        const Locale locale(identifier);
        QCOMPARE(locale.localizedStringForLanguageCode(u"fr"_s), french);
        QCOMPARE(locale.localizedStringForRegionCode(u"br"_s), brazil);
        QCOMPARE(locale.localizedStringForRegionCode(u"BR"_s), brazil);
    }

    void codeWithoutANameGivesNothing_data()
    {
        QTest::addColumn<QString>("code");
        for (const char *code :
             {"pb", "PB", "xx", "mdh", "-", "", "e", "en_US", "en-US", "root", "Unknown", "ä1", "e n"})
            QTest::newRow(code) << QString::fromUtf8(code);
    }

    void codeWithoutANameGivesNothing()
    {
        QFETCH(QString, code);
        for (const char *identifier : {"en_US", "de_DE", "C", "oc_FR"}) {
            const Locale locale(QString::fromLatin1(identifier));
            QCOMPARE(locale.localizedStringForLanguageCode(code), std::nullopt);
        }
        QCOMPARE(Locale(u"en"_s).localizedStringForRegionCode(code == u"mdh" ? u"QX"_s : code + u"!"_s),
                 std::nullopt);
    }

    void scriptOfAModifierAndCaseOfACode()
    {
        QCOMPARE(Locale(u"sr_RS.UTF-8"_s).localizedStringForLanguageCode(u"pt"_s), u"португалски"_s);
        QCOMPARE(Locale(u"sr_RS.UTF-8@latin"_s).localizedStringForLanguageCode(u"pt"_s), u"portugalski"_s);
        QCOMPARE(Locale(u"en"_s).localizedStringForLanguageCode(u"DE"_s), u"German"_s);
        // These only look as if the library had no name and gave the code back.
        QCOMPARE(Locale(u"en"_s).localizedStringForLanguageCode(u"vai"_s), u"Vai"_s);
    }

    void localeWithoutDisplayDataShowsEnglishNames_data()
    {
        QTest::addColumn<QString>("identifier");
        for (const char *identifier : {"oc_FR.UTF-8", "an_ES", "nds_DE", "rw_RW", "bo_CN", "xx_XX"})
            QTest::newRow(identifier) << QString::fromLatin1(identifier);
    }

    void localeWithoutDisplayDataShowsEnglishNames()
    {
        QFETCH(QString, identifier);
        const Locale locale(identifier);
        QVERIFY(locale.languageCode());
        QCOMPARE(locale.localizedStringForLanguageCode(u"pt"_s), u"Portuguese"_s);
        QCOMPARE(locale.localizedStringForRegionCode(u"br"_s), u"Brazil"_s);
        QCOMPARE(locale.localizedStringForLanguageCode(u"pb"_s), std::nullopt);
    }

    void defaultLocaleOfTheProcessDoesNotShine()
    {
        UErrorCode status = U_ZERO_ERROR;
        const QByteArray before = uloc_getDefault();
        uloc_setDefault("de_DE", &status);
        const auto name = Locale(u"oc_FR"_s).localizedStringForLanguageCode(u"pt"_s);
        const auto plain = Locale(u"C"_s).localizedStringForLanguageCode(u"pt"_s);
        uloc_setDefault(before.constData(), &status);
        QVERIFY(U_SUCCESS(status));
        QCOMPARE(name, u"Portuguese"_s);
        QCOMPARE(plain, u"Portuguese"_s);
    }

    void collationIsTheLocales_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QStringList>("sorted");
        QTest::newRow("English") << u"en_US"_s << QStringList{u"Afar"_s, u"Ålandic"_s, u"Zulu"_s};
        QTest::newRow("Swedish") << u"sv_SE"_s << QStringList{u"Afar"_s, u"Zulu"_s, u"Ålandic"_s};
        QTest::newRow("Czech") << u"cs_CZ"_s << QStringList{u"cizí"_s, u"hindština"_s, u"chorvatština"_s};
        QTest::newRow("not by code point")
            << u"de_DE"_s << QStringList{u"Ägyptisch"_s, u"arabisch"_s, u"Bosnisch"_s};
        QTest::newRow("C") << u"C"_s << QStringList{u"apple"_s, u"Banana"_s, u"cherry"_s};
    }

    void collationIsTheLocales()
    {
        QFETCH(QString, identifier);
        QFETCH(QStringList, sorted);
        const Locale locale(identifier);
        QStringList texts(sorted.rbegin(), sorted.rend());
        std::stable_sort(texts.begin(), texts.end(),
                         [&](const QString &a, const QString &b) { return locale.compare(a, b) < 0; });
        QCOMPARE(texts, sorted);
    }

    void namesThatDifferInCaseOrAccentDiffer()
    {
        const Locale locale(u"en_US"_s);
        QVERIFY(locale.compare(u"fon"_s, u"Fon"_s) < 0);
        QVERIFY(locale.compare(u"resume"_s, u"résumé"_s) < 0);
        QVERIFY(locale.compare(u"Fon"_s, u"Fon"_s) == 0);
        QVERIFY(locale.compare(u"b"_s, u"A"_s) > 0);
        // The accent of a first word weighs less than the second word's letters.
        QVERIFY(locale.compare(u"résumé a"_s, u"resume b"_s) < 0);
    }

    void codesAreInTheLibrarysOrder()
    {
        const auto listOf = [](const char *const *codes) {
            QStringList list;
            for (; *codes; ++codes)
                list += QString::fromLatin1(*codes);
            return list;
        };
        QCOMPARE(Locale::isoLanguageCodes(), listOf(uloc_getISOLanguages()));
        QCOMPARE(Locale::isoRegionCodes(), listOf(uloc_getISOCountries()));
        QVERIFY(!Locale::isoLanguageCodes().contains(u"pb"_s));
    }

    void anyThreadMayAsk()
    {
        const Locale german(u"de_DE"_s);
        std::vector<std::thread> threads;
        threads.reserve(4);
        std::atomic<int> right = 0;
        for (int index = 0; index < 4; ++index) {
            threads.emplace_back([&] {
                const bool isNamed = german.localizedStringForLanguageCode(u"fr"_s) == u"Französisch"_s;
                right += isNamed && german.compare(u"a"_s, u"b"_s) < 0 ? 1 : 0;
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(right.load(), 4);
    }
};

PLOVENDIX_PLAIN_TEST(LocaleTest)
#include "LocaleTest.moc"
