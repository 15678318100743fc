#pragma once
#include "Exchange.h"

#include <QTcpSocket>
#include <functional>

/// One connection of the loopback server: reads requests one after another and delivers the answers. Ends
/// itself when the other side goes.
class LoopbackConnection final : public QObject
{
public:
    using Handler = std::function<ServedAnswer(const ReceivedRequest &)>;

    LoopbackConnection(QTcpSocket *socket, Handler handler);

    /// Sends one more byte of an answer that drips.
    void drip();

private:
    void read();
    bool takeRequest(ReceivedRequest &request);
    void deliver(const ServedAnswer &answer, bool withBody);
    void deliverBody(const ServedAnswer &answer);

    QTcpSocket *m_socket;
    Handler m_handler;
    QByteArray m_received;
    QByteArray m_dripping;
};
