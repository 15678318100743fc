#pragma once
#include "Clock.h"
#include "HttpMessage.h"
#include "ServiceError.h"

#include <base/Result.h>

#include <QNetworkReply>
#include <QObject>
#include <memory>

class QNetworkAccessManager;

/// One request on the wire and its answer, with time limits: for the connection, for silence, and for the
/// whole. They run from the beginning, so whoever begins sees to it that the toolkit has a connection to
/// spare: it makes six to a host. An answer cut short, too large or packed beyond measure is an error and
/// nothing of it is kept. Follows no redirect. Main thread only.
class HttpExchange final : public QObject
{
public:
    using Completion = std::function<void(Result<HttpAnswer>)>;

    /// Begins. The completion comes on a later turn, and never once what this gives was let go.
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
    std::shared_ptr<QNetworkAccessManager> m_network; // until this is let go
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_received;
    Ended m_ended = Ended::Itself;
    Clock::Timer m_silence;
    Clock::Timer m_deadline;
};
