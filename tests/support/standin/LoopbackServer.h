#pragma once
#include "Exchange.h"

#include <QTcpServer>
#include <functional>

/// A small HTTP/1.1 server on 127.0.0.1, at a port the system chooses. Records every request; a handler gives
/// the answers. Lives on the thread that made it.
class LoopbackServer final : public QObject
{
public:
    using Handler = std::function<ServedAnswer(const ReceivedRequest &)>;

    explicit LoopbackServer(Handler handler);
    ~LoopbackServer() override;

    quint16 port() const { return m_port; }
    /// "http://127.0.0.1:PORT" and the path.
    QUrl url(const QString &path = {}) const;

    const QList<ReceivedRequest> &requests() const { return m_requests; }
    void forgetRequests() { m_requests.clear(); }
    int openConnections() const;

    /// Closes every connection and listens no more: what a killed server looks like. `start` brings it back.
    void stop();
    void start();
    /// Sends one more byte of every dripping answer.
    void drip();
    /// Lets dripping answers drip by themselves.
    void setDripInterval(int milliseconds);
    /// Told of each request once it was answered.
    void setObserver(std::function<void(const ReceivedRequest &, const ServedAnswer &)> observer);

private:
    void accept();
    ServedAnswer answer(ReceivedRequest request);

    Handler m_handler;
    std::function<void(const ReceivedRequest &, const ServedAnswer &)> m_observer;
    QTcpServer m_server;
    quint16 m_port = 0;
    QList<ReceivedRequest> m_requests;
    QObject m_connections; // owns the connections
    int m_dripTimer = 0;

protected:
    void timerEvent(QTimerEvent *event) override;
};
