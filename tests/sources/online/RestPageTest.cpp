#include <net/ServiceError.h>
#include <sources/online/RestPage.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray Good = R"({"attributes":{"language":"en","files":[{"file_id":1,"file_name":"a"}]}})";

Result<RestPage> read(const QByteArray &json)
{
    return RestPage::read(json, QUrl(u"https://subtitles.example"_s), Locale(u"en_US"_s));
}
} // namespace

class RestPageTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void envelopeIsRead()
    {
        const auto page =
            read(R"({"total_pages":31,"total_count":1502,"per_page":50,"page":2,"data":[)" + Good + "]}");
        QVERIFY(page);
        QCOMPARE(page->totalPages, 31);
        QCOMPARE(page->totalCount, 1502);
        QCOMPARE(page->page, 2);
        QCOMPARE(page->subtitles.size(), 1);
    }

    void nothingFoundIsNoError()
    {
        const auto page = read(R"({"total_pages":0,"total_count":0,"per_page":50,"page":1,"data":[]})");
        QVERIFY(page);
        QCOMPARE(page->records, 0);
    }

    void oneBadRecordCostsNothing()
    {
        const auto page = read(R"({"data":[42,null,)" + Good + R"(,"x",[],{}]})");
        QVERIFY(page);
        QCOMPARE(page->subtitles.size(), 1);
    }

    void nothingReadableIsNonsense_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"", "null", "[]", "42", "\"x\"", "{}", R"({"data":{}})", R"({"data":null})",
                                 R"({"data":[1,2]})", R"({"data":[{}]})", "<html></html>", R"({"data":[)",
                                 "\xFF\xFE{", R"({"data":[]}garbage)"})
            QTest::newRow(json[0] == '\0' ? "(empty)" : json) << QByteArray(json);
        QTest::newRow("deep") << QByteArray(100'000, '[');
        QTest::newRow("deep objects") << QByteArray("{\"data\":").repeated(20'000);
    }
    void nothingReadableIsNonsense()
    {
        QFETCH(const QByteArray, json);
        const auto page = read(json);
        QVERIFY(!page);
        QCOMPARE(kindOf(page.error()), ServiceFailure::BadAnswer);
    }

    void brokenBytesInATextAreForgiven()
    {
        QByteArray json = R"({"data":[)" + Good + "]}";
        json.replace("\"a\"", "\"a\xFF\xC0z\"");
        const auto page = read(json);
        QVERIFY(page);
        QCOMPARE(page->subtitles.constFirst()->subFileName, u"az"_s);
    }

    void byteOrderMarkIsForgiven() { QVERIFY(read("\xEF\xBB\xBF{\"data\":[]}")); }

    void samePageHasTheSameFingerprint()
    {
        const auto first = read(R"({"page":1,"data":[)" + Good + "]}");
        const auto again = read(R"({"page":2,"data":[)" + Good + "]}");
        const auto other = read(R"({"page":2,"data":[)" + Good + "," + Good + "]}");
        QCOMPARE(first->fingerprint, again->fingerprint);
        QVERIFY(first->fingerprint != other->fingerprint);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(RestPageTest)
#include "RestPageTest.moc"
