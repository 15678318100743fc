#include <net/HttpClient.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray Whole(4000, 'x');

/// Sends the head of an answer, some of its body, and goes.
class DyingServer final
{
public:
    DyingServer(const QByteArray &head, qsizetype bytes) : m_head(head), m_bytes(bytes)
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(*socket); });
        });
        QVERIFY(m_server.listen(QHostAddress::LocalHost));
    }
    QUrl url() const { return QUrl(u"http://127.0.0.1:%1/file"_s.arg(m_server.serverPort())); }

private:
    void answer(QTcpSocket &socket)
    {
        if (!socket.readAll().contains("\r\n\r\n"))
            return;
        socket.write(m_head + Whole.left(m_bytes));
        socket.flush();
        socket.disconnectFromHost();
    }

    QTcpServer m_server;
    QByteArray m_head;
    qsizetype m_bytes;
};
} // namespace

/// Answers of a server that dies while it speaks.
class CutAnswersTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void whatIsCutIsNeverTakenAsWhole_data()
    {
        QTest::addColumn<QByteArray>("headers");
        QTest::addColumn<int>("bytes");
        for (const QByteArray &connection : {QByteArray(), QByteArray("Connection: close\r\n")}) {
            for (const int bytes : {0, 1, 100, 3999}) {
                QTest::addRow("%d bytes, %s", bytes, connection.isEmpty() ? "kept" : "closing")
                    << connection << bytes;
            }
        }
    }
    void whatIsCutIsNeverTakenAsWhole()
    {
        QFETCH(const QByteArray, headers);
        QFETCH(const int, bytes);
        for (int time = 0; time < 3; ++time) {
            const Result<HttpAnswer> answer =
                answerFrom("HTTP/1.1 200 OK\r\n" + headers + "Content-Length: 4000\r\n\r\n", bytes);
            QVERIFY2(!answer, qPrintable(QString::number(time)));
            QCOMPARE(kindOf(answer.error()), ServiceFailure::Unavailable);
        }
    }

    /// The toolkit now and then calls an answer complete whose connection ended right after its headers.
    void lengthIsHeldAgainstTheBody_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("length");
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("isCut");
        const QByteArray none;
        QTest::newRow("nothing of it") << 200 << QByteArray("4000") << none << 0 << true;
        QTest::newRow("most of it") << 200 << QByteArray("4000") << none << 3999 << true;
        QTest::newRow("all of it") << 200 << QByteArray("4000") << none << 4000 << false;
        QTest::newRow("an error's page") << 500 << QByteArray("4000") << none << 10 << true;
        QTest::newRow("no length") << 200 << none << none << 10 << false;
        QTest::newRow("no number") << 200 << QByteArray("many") << none << 10 << false;
        QTest::newRow("a packed body's length")
            << 200 << QByteArray("4000") << QByteArray("gzip") << 10 << false;
        QTest::newRow("of what is unchanged") << 304 << QByteArray("4000") << none << 0 << false;
    }
    void lengthIsHeldAgainstTheBody()
    {
        QFETCH(const int, status);
        QFETCH(const QByteArray, length);
        QFETCH(const QByteArray, encoding);
        QFETCH(const int, bytes);
        HttpAnswer answer{status, {}, Whole.left(bytes), {}};
        if (!length.isEmpty())
            answer.headers["content-length"] = length;
        if (!encoding.isEmpty())
            answer.headers["content-encoding"] = encoding;
        QTEST(answer.isCutShort(), "isCut");
    }

    void whatIsWholeIs_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<int>("bytes");
        QTest::newRow("of that length") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 4000\r\n") << 4000;
        QTest::newRow("empty") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n") << 0;
        QTest::newRow("of no length") << QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\n") << 123;
        QTest::newRow("unchanged") << QByteArray("HTTP/1.1 304 Not Modified\r\nContent-Length: 4000\r\n")
                                   << 0;
    }
    void whatIsWholeIs()
    {
        QFETCH(const QByteArray, head);
        QFETCH(const int, bytes);
        const Result<HttpAnswer> answer = answerFrom(head + "\r\n", bytes);
        QVERIFY(answer);
        QCOMPARE(answer->body.size(), bytes);
    }

private:
    static Result<HttpAnswer> answerFrom(const QByteArray &head, qsizetype bytes)
    {
        const DyingServer server(head, bytes);
        ManualClock clock;
        HttpClient client(clock, ServiceName::Subtitles);
        HttpRequest request;
        request.url = server.url();
        Caught<HttpAnswer> caught;
        const auto call =
            client.send(request, HostRules({}, HostRules::Loopback::Accepted), caught.completion());
        return QTest::qWaitFor([&] { return caught.came(); }, WaitLimit)
                   ? *caught
                   : Result<HttpAnswer>(base::Error{u"test"_s, 1, u"never answered"_s});
    }
};

PLOVENDIX_TEST(CutAnswersTest)
#include "CutAnswersTest.moc"
