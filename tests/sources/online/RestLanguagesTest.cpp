#include <sources/online/RestLanguages.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray listOf(const QString &codes)
{
    QByteArrayList entries;
    for (const QString &code : codes.split(u' ', Qt::SkipEmptyParts))
        entries += R"({"language_code":")" + code.toUtf8() + "\"}";
    return R"({"data":[)" + entries.join(',') + "]}";
}

const QString Twenty = u"ar bg ca cs da de el en es et fi fr he hr hu it ja pt-PT ro zh-TW"_s;
} // namespace

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
              {u"zhc"_s, u"zh-ca"_s},       {u"mlt"_s, QString()},  {u"abk"_s, u"ab"_s},
              {u"lat"_s, QString()},        {u"pan"_s, QString()},  {u"xxx"_s, QString()},
              {QString(), QString()}})
            QTest::newRow(given.isEmpty() ? "(empty)" : qPrintable(given)) << given << code;
    }
    void threeLettersBecomeTheServicesCode()
    {
        QFETCH(const QString, given);
        QTEST(RestLanguages().codeFor(given), "code");
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

    void listSaysWhatThereIs_data()
    {
        QTest::addColumn<QString>("threeLetters");
        QTest::addColumn<QString>("code");
        for (const auto &[three, code] : {std::pair(u"eng"_s, u"en"_s),
                                          {u"por"_s, u"pt-pt"_s},
                                          {u"zht"_s, u"zh-tw"_s},
                                          {u"abk"_s, QString()},
                                          {u"guj"_s, u"gu"_s},
                                          {u"deu"_s, u"de"_s},
                                          {QString(), QString()}})
            QTest::newRow(three.isEmpty() ? "(empty)" : qPrintable(three)) << three << code;
    }
    void listSaysWhatThereIs()
    {
        QFETCH(const QString, threeLetters);
        const auto list = RestLanguages::read(listOf(Twenty + u" gu"_s));
        QVERIFY(list);
        QTEST(list->codeFor(threeLetters), "code");
    }

    void malformedListsAreRejected_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("page") << QByteArray("<html>");
        QTest::newRow("array") << QByteArray("[]");
        QTest::newRow("null") << QByteArray(R"({"data":null})");
        QTest::newRow("too few") << listOf(u"en de"_s);
        QTest::newRow("no codes") << listOf(u"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22"_s);
        QTest::newRow("one repeated") << listOf(u"en "_s.repeated(50));
        QTest::newRow("far too many") << listOf(Twenty + u" xx"_s.repeated(2000));
    }
    void malformedListsAreRejected()
    {
        QFETCH(const QByteArray, body);
        QVERIFY(!RestLanguages::read(body));
    }

    void invalidCodesAreLeftOut()
    {
        const auto list = RestLanguages::read(listOf(Twenty + u" en&x=1 ../.. "_s));
        QVERIFY(list);
        QVERIFY(*list == *RestLanguages::read(listOf(Twenty)));
    }
};

PLOVENDIX_PLAIN_TEST(RestLanguagesTest)
#include "RestLanguagesTest.moc"
