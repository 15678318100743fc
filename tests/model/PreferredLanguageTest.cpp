#include <base/UserDefaults.h>
#include <model/LanguageCodeConversion.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// The preferred language as the settings hold it and as a search asks for it.
class PreferredLanguageTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    int m_files = 0;

private Q_SLOTS:
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files)));
        reloadLanguageCodeTable();
    }

    void withNothingStoredOrRegisteredItIsEnglish()
    {
        QCOMPARE(UserDefaults::standard().languageCode(), u"en"_s);
        QCOMPARE(UserDefaults::standard().string(u"languageCode"_s), std::nullopt);
        QCOMPARE(iso639_2LanguageCode(UserDefaults::standard().languageCode()), u"eng"_s);
    }

    void registeredDefaultHoldsUntilAValueIsStored()
    {
        UserDefaults &defaults = UserDefaults::standard();
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        QCOMPARE(defaults.languageCode(), u"de"_s);
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(defaults.languageCode(), u"fr"_s);
        defaults.removeObject(u"languageCode"_s);
        QCOMPARE(defaults.languageCode(), u"de"_s);
    }

    void codeOutsideTheCatalogueIsUsedAsItIs_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("searchedAs");
        QTest::newRow("no such language") << u"q0"_s << u"eng"_s;
        QTest::newRow("three letters with an entry") << u"ast"_s << u"ast"_s;
        QTest::newRow("three letters without") << u"qqq"_s << u"eng"_s;
        QTest::newRow("the services' own") << u"pb"_s << u"pob"_s;
    }
    void codeOutsideTheCatalogueIsUsedAsItIs()
    {
        QFETCH(QString, code);
        QFETCH(QString, searchedAs);
        UserDefaults::standard().registerDefaults({{u"languageCode"_s, code}});
        QCOMPARE(UserDefaults::standard().languageCode(), code);
        QCOMPARE(iso639_2LanguageCode(UserDefaults::standard().languageCode()), searchedAs);
    }

    void choosingBrazilianPortugueseStoresItsCode()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"pb"_s);
        QCOMPARE(UserDefaults::standard().string(u"languageCode"_s), u"pb"_s);
        QCOMPARE(UserDefaults::standard().languageCode(), u"pb"_s);
    }

    void observersHearOfAChangeOnce()
    {
        QVariantList heard;
        const auto observation = UserDefaults::standard().observe(
            u"languageCode"_s, [&heard](const QVariant &code) { heard += code; });
        UserDefaults::standard().setObject(u"languageCode"_s, u"sv"_s);
        QTRY_COMPARE(heard, QVariantList{u"sv"_s});
        UserDefaults::standard().synchronize();
        QCOMPARE(heard, QVariantList{u"sv"_s});
    }
};

PLOVENDIX_TEST(PreferredLanguageTest)
#include "PreferredLanguageTest.moc"
