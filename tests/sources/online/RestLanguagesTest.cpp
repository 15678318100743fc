#include <sources/online/RestLanguages.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class RestLanguagesTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox; // its bundle has the language codes

private Q_SLOTS:
    void threeLettersBecomeTheServicesCode_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("code");
        for (const auto &[given, code] :
             {std::pair(u"eng"_s, u"en"_s), {u"pob"_s, u"pt-br"_s}, {u"por"_s, u"pt-pt"_s},
              {u"chi"_s, u"zh-cn"_s},       {u"zht"_s, u"zh-tw"_s}, {u"aze"_s, u"az-az"_s},
              {u"azb"_s, u"az-zb"_s},       {u"tet"_s, u"tm-td"_s}, {u"ell"_s, u"el"_s},
              {u"gre"_s, u"el"_s},          {u"scc"_s, u"sr"_s},    {u"srp"_s, u"sr"_s},
              {u"nob"_s, u"no"_s},          {u"nno"_s, u"no"_s},    {u"deu"_s, u"de"_s},
              {u"GER"_s, u"de"_s},          {u"fra"_s, u"fr"_s},    {u"spl"_s, u"ea"_s},
              {u"zhc"_s, u"zh-ca"_s},       {u"mlt"_s, QString()},  {u"fao"_s, QString()},
              {u"lat"_s, QString()},        {u"pan"_s, QString()},  {u"xxx"_s, QString()},
              {QString(), QString()}})
            QTest::newRow(given.isEmpty() ? "(empty)" : qPrintable(given)) << given << code;
    }
    void threeLettersBecomeTheServicesCode()
    {
        QFETCH(const QString, given);
        QTEST(RestLanguages::fromThreeLetters(given), "code");
    }

    void theServicesCodeBecomesThreeLetters_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("code");
        for (const auto &[given, code] : {std::pair(u"en"_s, u"eng"_s),
                                          {u"pt-BR"_s, u"pob"_s},
                                          {u"pt-PT"_s, u"por"_s},
                                          {u"ZH-TW"_s, u"zht"_s},
                                          {u"sr"_s, u"scc"_s},
                                          {u"ea"_s, u"spl"_s},
                                          {u"sp"_s, u"spn"_s},
                                          {u"at"_s, u"ast"_s},
                                          {u"mt"_s, u"mlt"_s},
                                          {QString(), QString()}})
            QTest::newRow(given.isEmpty() ? "(empty)" : qPrintable(given)) << given << code;
    }
    void theServicesCodeBecomesThreeLetters()
    {
        QFETCH(const QString, given);
        QTEST(RestLanguages::toThreeLetters(given), "code");
    }
};

PLOVENDIX_PLAIN_TEST(RestLanguagesTest)
#include "RestLanguagesTest.moc"
