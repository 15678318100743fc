#pragma once
#include "Clock.h"
#include "HttpMessage.h"
#include "ServiceError.h"

#include <base/Result.h>

#include <QNetworkReply>
#include <QObject>
#include <memory>

class QNetworkAccessManager;

/// One HTTP request and its answer, with timeouts for the connection, for silence and for the whole. Timeouts
/// start at once, so callers must stay within Qt's six connections per host. A truncated, too large or
/// excessively compressed answer is an error and its content is dropped. Does not follow redirects. Main
/// thread only.
class HttpExchange final : public QObject
{
public:
    using Completion = std::function<void(Result<HttpAnswer>)>;

    /// Starts the request. The completion comes on a later turn, and never after the returned pointer was
    /// released.
    static std::shared_ptr<HttpExchange> begin(std::shared_ptr<QNetworkAccessManager> network, Clock &clock,
                                               ServiceName service, const HttpRequest &request,
                                               Completion completion);
    ~HttpExchange() override;

private:
    enum class Ended
    {
        Itself,
        TooSlow,
        TooLarge
    };

    HttpExchange(std::shared_ptr<QNetworkAccessManager> network, Clock &clock, ServiceName service,
                 const HttpRequest &request, Completion completion);
    void send();
    void watch();
    void allowSilence(Clock::Duration duration);
    void take();
    void stop(Ended reason);
    void finish();
    void abandon();
    Result<HttpAnswer> outcome() const;
    HttpAnswer answer() const;

    Clock &m_clock;
    const ServiceName m_service;
    const HttpRequest m_request;
    Completion m_completion;
    std::shared_ptr<QNetworkAccessManager> m_network; // the manager of this request
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_received;
    Ended m_ended = Ended::Itself;
    Clock::Timer m_silence;
    Clock::Timer m_deadline;
};
