// A server that answers with arbitrary bytes: one completion for each request, and the key stays with its
// server.
// "@@OTHER@@" in the input becomes the address of a second server, so that redirects lead somewhere.
#include "Oracle.h"

#include <net/HttpClient.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int LongestMilliseconds = 3000;
const QByteArray Key = "fuzzed-key";

/// Answers each connection's first bytes with `answer` and closes it.
class Server final : public QTcpServer
{
public:
    QByteArray answer;
    QByteArray received;

    Server()
    {
        require(listen(QHostAddress::LocalHost), "a server listens");
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                    received += socket->readAll();
                    socket->write(answer);
                    socket->disconnectFromHost();
                });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }
    QByteArray address() const { return "http://127.0.0.1:" + QByteArray::number(serverPort()) + "/"; }
};
} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Server server;
    static Server other;
    static Clock clock;
    static HttpClient client(clock);
    server.answer = bytesOf(data, size);
    server.answer.replace("@@OTHER@@", other.address());
    server.received.clear();
    other.received.clear();
    other.answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}";

    HttpRequest request;
    request.url = QUrl(QString::fromLatin1(server.address()));
    request.setHeader("Api-Key", Key);
    request.maxBytes = 64LL * 1024;
    request.deadline = std::chrono::milliseconds(500);
    int completions = 0;
    QEventLoop untilAnswered;
    const HttpCall call =
        client.send(request, HostRules({}, HostRules::Loopback::Accepted), [&](const HttpResult &answer) {
            ++completions;
            QTimer::singleShot(0, &untilAnswered,
                               &QEventLoop::quit); // a turn later, when a second one had come
            require(!answer || answer->body.size() <= request.maxBytes, "an answer has its limit");
        });
    QTimer::singleShot(LongestMilliseconds, &untilAnswered, &QEventLoop::quit);
    untilAnswered.exec();
    require(completions == 1, "each request completes once");
    require(!other.received.contains(Key), "the key stays with its server");
    return 0;
}
