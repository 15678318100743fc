#include <features/feedback/FeedbackSender.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QString Refused = u"The maker’s server did not take the report."_s;
const QString Unavailable = u"The maker’s server is not available right now."_s;
} // namespace

class FeedbackSenderTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    ManualClock m_clock;
    HttpClient m_client{m_clock};
    std::unique_ptr<LoopbackServer> m_server;
    ServedAnswer m_answer;
    std::unique_ptr<Caught<void>> m_caught;
    HttpCall m_call;

    void start(const QString &address)
    {
        m_caught = std::make_unique<Caught<void>>();
        m_call = sendReport(m_client, {u"Hello"_s, {{u"version"_s, u"1.0"_s}}, {}}, address,
                            m_caught->completion());
        QVERIFY(!m_caught->came());
    }
    void start() { start(m_server->url(u"/reports"_s).toString()); }
    void waitForFailure(const QString &sentence)
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY(!**m_caught);
        QCOMPARE((*m_caught)->error().localizedDescription, sentence);
    }

private Q_SLOTS:
    void init()
    {
        m_answer = {201, {}, "{}"};
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return m_answer; });
    }
    void cleanup()
    {
        m_call.reset();
        m_server.reset();
    }

    void reportIsPostedAsJson()
    {
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY(**m_caught);
        QCOMPARE(m_server->requests().size(), 1);
        const ReceivedRequest request = m_server->requests().constFirst();
        QCOMPARE(request.method + ' ' + request.target, "POST /reports");
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.body, R"({"parameters":{"version":"1.0"},"text":"Hello"})");
    }

    void uselessAnswersAreFailuresAndNotRepeated_data()
    {
        QTest::addColumn<ServedAnswer>("answer");
        QTest::addColumn<QString>("sentence");
        for (const int status : {302, 307, 400, 404, 413})
            QTest::addRow("%d", status) << ServedAnswer{status, {{"Location", "/elsewhere"}}, {}} << Refused;
        for (const int status : {429, 500})
            QTest::addRow("%d", status) << ServedAnswer{status, {}, {}} << Unavailable;
        QTest::newRow("endless") << ServedAnswer{200, {}, QByteArray(1024 * 1024, 'x')} << Refused;
        QTest::newRow("closed") << ServedAnswer{200, {}, {}, Delivery::ClosedBefore} << Unavailable;
    }
    void uselessAnswersAreFailuresAndNotRepeated()
    {
        QFETCH(const ServedAnswer, answer);
        QFETCH(const QString, sentence);
        m_answer = answer;
        start();
        waitForFailure(sentence);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void silenceEndsInATimeout()
    {
        m_answer.delivery = Delivery::Silent;
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        m_clock.advance(60s);
        waitForFailure(u"The maker’s server did not answer in time."_s);
    }

    void addressesThatCannotBeAsked()
    {
        start(u"https://feedback.invalid/"_s);
        waitForFailure(u"There is no connection to the maker’s server."_s);
        start(u"http://feedback.example/"_s);
        waitForFailure(
            u"The service cannot be asked at the address in the settings: it must begin with https."_s);
    }
};

PLOVENDIX_TEST(FeedbackSenderTest)
#include "FeedbackSenderTest.moc"
