#include <model/ServiceLanguages.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

class ServiceLanguagesTest : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
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
    }

    void everySpellingGivesTheFamilysCode()
    {
        QFETCH(QString, spelling);
        QFETCH(QString, code);
        QCOMPARE(ServiceLanguages::code(spelling), code);
    }

    void terminologicalFormsAreAccepted()
    {
        const QString forms =
            QStringLiteral("deu fra nld ces ron slk sqi hye eus mya zho kat isl mkd mri msa fas bod cym ell");
        const QString codes =
            QStringLiteral("ger fre dut cze rum slo alb arm baq bur chi geo ice mac mao may per tib wel ell");
        const QStringList wanted = codes.split(QLatin1Char(' '));
        QStringList given;
        for (const QString &form : forms.split(QLatin1Char(' ')))
            given += ServiceLanguages::code(form);
        QCOMPARE(given, wanted);
    }

    void twoLetterCodes()
    {
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("ger")), QStringLiteral("de"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("ell")), QStringLiteral("el"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("pob")), QStringLiteral("pb"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("rum")), QStringLiteral("ro"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("scc")), QStringLiteral("sr"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("heb")), QStringLiteral("he"));
        QCOMPARE(ServiceLanguages::twoLetterCode(QStringLiteral("qqq")), QString());
    }

    void namesAreInThePersonsLanguage_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("name");
        QTest::newRow("English") << "eng"
                                 << "en_US"
                                 << "English";
        QTest::newRow("in German") << "eng"
                                   << "de_DE"
                                   << "Englisch";
        QTest::newRow("with a region") << "pob"
                                       << "en_US"
                                       << "Portuguese (Brazil)";
        QTest::newRow("two letters") << "pb"
                                     << "en_US"
                                     << "Portuguese (Brazil)";
        QTest::newRow("with a region, in German") << "pob"
                                                  << "de_DE"
                                                  << "Portugiesisch (Brasilien)";
        QTest::newRow("Latin America") << "spl"
                                       << "en_US"
                                       << "Spanish (Latin America)";
        QTest::newRow("three letters of their own") << "ast"
                                                    << "en_US"
                                                    << "Asturian";
        QTest::newRow("no locale") << "fre"
                                   << "C"
                                   << "French";
        QTest::newRow("unknown") << "qqq"
                                 << "en_US"
                                 << "qqq";
    }

    void namesAreInThePersonsLanguage()
    {
        QFETCH(QString, code);
        QFETCH(QString, locale);
        QFETCH(QString, name);
        QCOMPARE(ServiceLanguages::name(code, Locale(locale)), name);
    }

    void everyCodeHasAName()
    {
        const Locale english(QStringLiteral("en_US"));
        for (const char *code : {"pob", "pom", "mne", "ast", "mni", "syr", "zhe", "zht", "spl", "spn", "prs",
                                 "sat", "tet", "azb", "zhc", "ell", "scc", "alb", "rum"}) {
            const QString text = QString::fromLatin1(code);
            QVERIFY2(ServiceLanguages::name(text, english) != text, code);
        }
    }
};

PLOVENDIX_TEST(ServiceLanguagesTest)
#include "ServiceLanguagesTest.moc"
