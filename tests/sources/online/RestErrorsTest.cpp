#include <sources/online/RestErrors.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
HttpAnswer answer(int status, const QByteArray &body = {}, const QByteArray &reason = {})
{
    HttpAnswer made;
    made.status = status;
    made.body = body;
    if (!reason.isEmpty())
        made.headers.insert("x-reason", reason);
    return made;
}
} // namespace

class RestErrorsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusSaysTheKind_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("kind");
        const auto row = [](int status, const QByteArray &body, ServiceFailure kind) {
            QTest::addRow("%d %s", status, body.constData()) << status << body << static_cast<int>(kind);
        };
        row(400, {}, ServiceFailure::Rejected);
        row(400, R"({"message":"Query is too short"})", ServiceFailure::NothingToAsk);
        row(401, R"({"message":"Unauthorized"})", ServiceFailure::LoginRefused);
        row(403, R"({"message":"You cannot consume this service"})", ServiceFailure::KeyRefused);
        row(403, "<html><title>403 Forbidden</title></html>", ServiceFailure::KeyRefused);
        row(404, "Not found", ServiceFailure::Rejected);
        row(406, R"({"message":"Invalid file_id"})", ServiceFailure::Rejected);
        row(408, {}, ServiceFailure::Timeout);
        row(410, "Invalid or expired link", ServiceFailure::LinkExpired);
        row(413, {}, ServiceFailure::Rejected);
        row(414, "<html>", ServiceFailure::Rejected);
        row(418, {}, ServiceFailure::BadAnswer);
        row(429, {}, ServiceFailure::TooManyRequests);
        row(500, {}, ServiceFailure::Unavailable);
        row(503, "<html>", ServiceFailure::Unavailable);
        row(301, {}, ServiceFailure::BadAnswer);
        row(204, {}, ServiceFailure::BadAnswer);
        row(304, {}, ServiceFailure::BadAnswer);
    }
    void statusSaysTheKind()
    {
        QFETCH(const int, status);
        QFETCH(const QByteArray, body);
        QTEST(static_cast<int>(kindOf(RestErrors::error(answer(status, body))).value()), "kind");
    }

    void messageIsFoundWhereverItIs_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::newRow("message") << QByteArray(R"({"message":"one","status":400})") << u"one"_s;
        QTest::newRow("error") << QByteArray(R"({"error":"two"})") << u"two"_s;
        QTest::newRow("errors") << QByteArray(R"({"errors":["three","four"]})") << u"three"_s;
        QTest::newRow("page") << QByteArray("<html><TITLE>five\nsix</TITLE></html>") << u"five six"_s;
        QTest::newRow("text") << QByteArray("seven\r\n") << u"seven"_s;
        QTest::newRow("header") << QByteArray() << u"from the header"_s;
        QTest::newRow("other json") << QByteArray("{}") << u"from the header"_s;
    }
    void messageIsFoundWhereverItIs()
    {
        QFETCH(const QByteArray, body);
        QTEST(RestErrors::message(answer(400, body, "from the header")), "message");
    }

    void rejectionsSayWhy()
    {
        const base::Error error = RestErrors::error(answer(400, {}, "moviehash is wrong"));
        QVERIFY(error.localizedDescription.contains(u"moviehash is wrong"_s));
    }

    void tokenRefusalsAreKnown()
    {
        QVERIFY(RestErrors::isTokenRefused(answer(401)));
        QVERIFY(RestErrors::isTokenRefused(answer(406, R"({"message":"Invalid token"})")));
        QVERIFY(RestErrors::isTokenRefused(answer(500, R"({"message":"invalid token"})")));
        QVERIFY(!RestErrors::isTokenRefused(answer(406, R"({"message":"Invalid file_id"})")));
        QVERIFY(!RestErrors::isTokenRefused(answer(500)));
        QVERIFY(!RestErrors::isTokenRefused(answer(403)));
    }

    void serversWordsCarryNoSecrets()
    {
        const QString words =
            RestErrors::message(answer(400, R"({"message":"bad Api-Key: abcdef123 given"})"));
        QVERIFY(!words.contains(u"abcdef123"_s));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(RestErrorsTest)
#include "RestErrorsTest.moc"
