#include "LoopbackServer.h"

#include "LoopbackConnection.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimerEvent>

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
