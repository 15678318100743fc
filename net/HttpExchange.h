#pragma once
#include "Clock.h"
#include "HttpMessage.h"

#include <QNetworkReply>
#include <QObject>
#include <memory>

/// One HTTP request and its answer, with timeouts for the connection, for silence and for the whole. Timeouts
/// start at once, so callers must stay within Qt's six connections per host. A truncated, too large or
/// excessively compressed answer is a fault and its content is dropped. Does not follow redirects. Main
/// thread only.
class HttpExchange final : public QObject
{
public:
    /// Starts the request. The completion comes on a later turn, and never after the returned pointer was
    /// released.
    static std::shared_ptr<HttpExchange> begin(std::shared_ptr<QNetworkAccessManager> network, Clock &clock,
                                               const HttpRequest &request, HttpCompletion completion);
    ~HttpExchange() override;

private:
    HttpExchange(std::shared_ptr<QNetworkAccessManager> network, Clock &clock, const HttpRequest &request,
                 HttpCompletion completion);
    void send();
    void allowSilence(Clock::Duration duration);
    void take();
    void stop(ServiceFailure kind, const QString &detail);
    void finish();
    void abandon();
    HttpResult outcome() const;

    Clock &m_clock;
    const HttpRequest m_request;
    HttpCompletion m_completion;                      // empty once called or abandoned
    std::shared_ptr<QNetworkAccessManager> m_network; // the manager of this request
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_received;
    std::optional<TransportFault> m_fault; // why this object stopped the request
    Clock::Timer m_silence;
    Clock::Timer m_deadline;
};
