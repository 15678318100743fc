#include "LoopbackConnection.h"

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
} // namespace

LoopbackConnection::LoopbackConnection(QTcpSocket *socket, Handler handler)
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
