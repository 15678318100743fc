#include "HttpExchange.h"

#include "OneTimeUpload.h"

#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkRequest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration ConnectLimit = 10s;
constexpr Clock::Duration SilenceLimit = 20s;
constexpr int FirstRefusalStatus = 300;
constexpr int FirstProxyError = 100;
constexpr int FirstContentError = 200;

QNetworkRequest networkRequest(const HttpRequest &request)
{
    QNetworkRequest result(request.url);
    for (const auto &[name, value] : request.headers)
        result.setRawHeader(name, value);
    // Redirects are followed by HttpClient, because Qt would send the key to any host. No cookies, no stored
    // logins.
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return result;
}

ServiceFailure kindOfFailure(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
        return ServiceFailure::Offline;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError: // the connection was closed, and a POST is not repeated
        return ServiceFailure::Unavailable;
    case QNetworkReply::TimeoutError:
        return ServiceFailure::Timeout;
    case QNetworkReply::SslHandshakeFailedError:
        return ServiceFailure::Insecure;
    default:
        break;
    }
    return error > FirstProxyError && error < FirstContentError ? ServiceFailure::Proxy
                                                                : ServiceFailure::BadAnswer;
}
} // namespace

std::shared_ptr<HttpExchange> HttpExchange::begin(std::shared_ptr<QNetworkAccessManager> network,
                                                  Clock &clock, ServiceName service,
                                                  const HttpRequest &request, Completion completion)
{
    auto *exchange = new HttpExchange(std::move(network), clock, service, request, std::move(completion));
    exchange->send();
    exchange->watch();
    // The exchange may be released inside its own completion.
    return {exchange, [](HttpExchange *done) {
                done->abandon();
                done->deleteLater();
            }};
}

HttpExchange::HttpExchange(std::shared_ptr<QNetworkAccessManager> network, Clock &clock, ServiceName service,
                           const HttpRequest &request, Completion completion)
    : m_clock(clock),
      m_service(service),
      m_request(request),
      m_completion(std::move(completion)),
      m_network(std::move(network))
{
}

HttpExchange::~HttpExchange()
{
    abandon();
}

void HttpExchange::send()
{
    QNetworkRequest request = networkRequest(m_request);
    switch (m_request.method) {
    case HttpRequest::Method::Get:
        m_reply.reset(m_network->get(request));
        return;
    case HttpRequest::Method::Delete:
        m_reply.reset(m_network->deleteResource(request));
        return;
    case HttpRequest::Method::Post:
        request.setHeader(QNetworkRequest::ContentLengthHeader, m_request.body.size());
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        auto *upload = new OneTimeUpload(m_request.body, this);
        m_reply.reset(m_network->post(request, upload));
        return;
    }
}

void HttpExchange::watch()
{
    m_reply->setParent(nullptr);
    connect(m_reply.get(), &QNetworkReply::requestSent, this, [this] { allowSilence(SilenceLimit); });
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, [this] { allowSilence(SilenceLimit); });
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &HttpExchange::take);
    connect(m_reply.get(), &QNetworkReply::finished, this, &HttpExchange::finish);
    allowSilence(ConnectLimit);
    m_deadline = m_clock.after(m_request.deadline, [this] { stop(Ended::TooSlow); });
}

void HttpExchange::allowSilence(Clock::Duration duration)
{
    if (!m_completion)
        return; // a late signal of a finished reply
    m_silence = m_clock.after(duration, [this] { stop(Ended::TooSlow); });
}

void HttpExchange::take()
{
    allowSilence(SilenceLimit);
    m_received += m_reply->readAll();
    if (m_received.size() > m_request.maxBytes)
        stop(Ended::TooLarge);
}

void HttpExchange::stop(Ended reason)
{
    if (m_ended != Ended::Itself)
        return;
    m_ended = reason;
    m_reply->abort();
}

void HttpExchange::finish()
{
    m_silence.cancel();
    m_deadline.cancel();
    if (!m_completion)
        return;
    if (m_ended == Ended::Itself)
        m_received += m_reply->readAll();
    const Completion completion = std::exchange(m_completion, nullptr);
    completion(outcome());
}

void HttpExchange::abandon()
{
    m_completion = nullptr;
    m_silence.cancel();
    m_deadline.cancel();
    if (m_reply && m_reply->isRunning()) {
        disconnect(m_reply.get(), nullptr, this, nullptr);
        m_reply->abort();
    }
    // Release now instead of with this object: at the program's end deferred deletion does not happen, and
    // the manager's thread must not outlive the program.
    m_network.reset();
}

Result<HttpAnswer> HttpExchange::outcome() const
{
    const auto failure = [this](ServiceFailure kind, const QString &detail) {
        return serviceError(kind, m_service, m_request.url.host() + ": "_L1 + detail);
    };
    if (m_ended == Ended::TooSlow)
        return failure(ServiceFailure::Timeout, u"no answer in time"_s);
    if (m_ended == Ended::TooLarge || m_received.size() > m_request.maxBytes)
        return failure(ServiceFailure::BadAnswer, u"the answer is too large"_s);
    const QNetworkReply::NetworkError error = m_reply->error();
    const HttpAnswer read = answer();
    const bool statusSaysIt = error > FirstContentError && read.status >= FirstRefusalStatus;
    // Qt reports success for some answers whose connection closed right after the headers.
    if (error == QNetworkReply::NoError && read.isCutShort())
        return failure(ServiceFailure::Unavailable, u"the answer was cut short"_s);
    if (error == QNetworkReply::NoError || statusSaysIt)
        return read;
    // Qt has no separate error for a proxy that refuses the request.
    const bool byProxy =
        error == QNetworkReply::UnknownNetworkError &&
        m_network->proxyFactory()->queryProxy(QNetworkProxyQuery(m_request.url)).value(0).type() !=
            QNetworkProxy::NoProxy;
    return failure(byProxy ? ServiceFailure::Proxy : kindOfFailure(error), m_reply->errorString());
}

HttpAnswer HttpExchange::answer() const
{
    HttpAnswer answer;
    answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = m_received;
    answer.url = m_request.url;
    for (const auto &[name, value] : m_reply->rawHeaderPairs())
        answer.headers.insert(name.toLower(), value);
    return answer;
}
