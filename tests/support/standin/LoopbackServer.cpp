#include "LoopbackServer.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimerEvent>

namespace
{
constexpr qsizetype ChunkBytes = 1000;

QByteArray headOf(const ServedAnswer &answer)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + " Status\r\n";
    for (const auto &[name, value] : answer.headers)
        head += name + ": " + value + "\r\n";
    const bool hasBody = answer.status != 204 && answer.status != 304;
    if (answer.delivery == Delivery::Chunked || answer.delivery == Delivery::ChunkedWithoutEnd)
        head += "Transfer-Encoding: chunked\r\n";
    else if (answer.delivery == Delivery::LengthTooLong)
        head += "Content-Length: " + QByteArray::number(answer.body.size() + 1000) + "\r\n";
    else if (hasBody)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    return head + "\r\n";
}

QByteArray chunked(const QByteArray &body)
{
    QByteArray result;
    for (qsizetype start = 0; start < body.size(); start += ChunkBytes) {
        const QByteArray chunk = body.mid(start, ChunkBytes);
        result += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    return result;
}

/// One connection of the loopback server: reads requests one after another and delivers the answers. Ends
/// itself when the other side goes.
class LoopbackConnection final : public QObject
{
public:
    LoopbackConnection(QTcpSocket *socket, LoopbackServer::Handler handler);

    /// Sends one more byte of an answer that drips.
    void drip();

private:
    void read();
    bool takeRequest(ReceivedRequest &request);
    void deliver(const ServedAnswer &answer, bool withBody);
    void deliverBody(const ServedAnswer &answer);

    QTcpSocket *m_socket;
    LoopbackServer::Handler m_handler;
    QByteArray m_received;
    QByteArray m_dripping;
};

LoopbackConnection::LoopbackConnection(QTcpSocket *socket, LoopbackServer::Handler handler)
    : m_socket(socket), m_handler(std::move(handler))
{
    m_socket->setParent(this);
    connect(m_socket, &QTcpSocket::readyRead, this, &LoopbackConnection::read);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void LoopbackConnection::read()
{
    m_received += m_socket->readAll();
    ReceivedRequest request;
    while (takeRequest(request)) {
        request.peerPort = m_socket->peerPort();
        const ServedAnswer answer = m_handler(request);
        deliver(answer, request.method != "HEAD");
        request = {};
    }
}

bool LoopbackConnection::takeRequest(ReceivedRequest &request)
{
    const qsizetype end = m_received.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QByteArrayList lines = m_received.left(end).split('\n');
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        request.headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
    }
    const qsizetype length = request.header("Content-Length").toLongLong();
    if (m_received.size() < end + 4 + length)
        return false;
    const QByteArrayList first = lines.first().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    request.body = m_received.mid(end + 4, length);
    m_received.remove(0, end + 4 + length);
    return true;
}

void LoopbackConnection::deliver(const ServedAnswer &answer, bool withBody)
{
    switch (answer.delivery) {
    case Delivery::ClosedBefore:
        m_socket->disconnectFromHost();
        return;
    case Delivery::Silent:
        return;
    default:
        break;
    }
    m_socket->write(headOf(answer));
    if (withBody)
        deliverBody(answer);
    m_socket->flush();
}

void LoopbackConnection::deliverBody(const ServedAnswer &answer)
{
    switch (answer.delivery) {
    case Delivery::Chunked:
        m_socket->write(chunked(answer.body) + "0\r\n\r\n");
        return;
    case Delivery::ChunkedWithoutEnd:
        m_socket->write(chunked(answer.body));
        m_socket->disconnectFromHost();
        return;
    case Delivery::LengthTooLong:
    case Delivery::ClosedAfter:
        m_socket->write(answer.body);
        m_socket->disconnectFromHost();
        return;
    case Delivery::Dripped:
        m_dripping = answer.body;
        return;
    case Delivery::StalledAfterHeaders:
        return;
    default:
        m_socket->write(answer.body);
    }
}

void LoopbackConnection::drip()
{
    if (m_dripping.isEmpty())
        return;
    m_socket->write(m_dripping.left(1));
    m_socket->flush();
    m_dripping.remove(0, 1);
}
} // namespace

LoopbackServer::LoopbackServer(Handler handler) : m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, &LoopbackServer::accept);
    start();
}

LoopbackServer::~LoopbackServer()
{
    stop();
}

void LoopbackServer::start()
{
    if (!m_server.isListening() && !m_server.listen(QHostAddress::LocalHost, m_port))
        qFatal("The loopback server could not listen");
    m_port = m_server.serverPort();
}

void LoopbackServer::stop()
{
    m_server.close();
    const QObjectList connections = m_connections.children();
    qDeleteAll(connections);
}

QUrl LoopbackServer::url(const QString &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path));
}

int LoopbackServer::openConnections() const
{
    return static_cast<int>(m_connections.children().size());
}

void LoopbackServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *connection = new LoopbackConnection(
            socket, [this](const ReceivedRequest &request) { return answer(request); });
        connection->setParent(&m_connections);
    }
}

ServedAnswer LoopbackServer::answer(ReceivedRequest request)
{
    request.port = m_port;
    m_requests += request;
    const ServedAnswer answer = m_handler(request);
    if (m_observer)
        m_observer(request, answer);
    return answer;
}

void LoopbackServer::drip()
{
    const QObjectList connections = m_connections.children();
    for (QObject *connection : connections)
        static_cast<LoopbackConnection *>(connection)->drip();
}

void LoopbackServer::setDripInterval(int milliseconds)
{
    if (m_dripTimer != 0)
        killTimer(m_dripTimer);
    m_dripTimer = startTimer(milliseconds);
}

void LoopbackServer::setObserver(std::function<void(const ReceivedRequest &, const ServedAnswer &)> observer)
{
    m_observer = std::move(observer);
}

void LoopbackServer::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_dripTimer)
        drip();
}
