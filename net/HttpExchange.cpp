#include "HttpExchange.h"

#include "Redactor.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkRequest>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration ConnectTimeout = 10s;
constexpr Clock::Duration SilenceTimeout = 20s;
const QString TooSlow = u"no answer in time"_s;
constexpr int FirstRefusalStatus = 300;
constexpr int FirstProxyError = 100;
constexpr int FirstContentError = 200;

/// A request body that can be read once and not rewound. Qt repeats a request when a kept-alive connection
/// breaks before the answer; with such a body it reports the failure instead, so nothing is sent twice.
class OneTimeUpload final : public QIODevice
{
public:
    OneTimeUpload(const QByteArray &content, QObject *parent) : QIODevice(parent), m_content(content)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_content.size() - m_read; }
    bool seek(qint64) override { return false; } // the base class would log a warning
    bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = std::min(maxSize, bytesAvailable());
        if (count == 0)
            return -1;
        std::memcpy(data, m_content.constData() + m_read, static_cast<std::size_t>(count));
        m_read += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_content;
    qint64 m_read = 0;
};

QNetworkRequest networkRequest(const HttpRequest &request)
{
    QNetworkRequest result(request.url);
    for (const auto &[name, value] : request.headers)
        result.setRawHeader(name, value);
    // HttpClient follows redirects: Qt 6.4 ends some on a kept connection with an empty answer, and would not
    // let them wait for the rate.
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // No cookies, no stored logins.
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
                                                  Clock &clock, const HttpRequest &request,
                                                  HttpCompletion completion)
{
    auto *exchange = new HttpExchange(std::move(network), clock, request, std::move(completion));
    exchange->send();
    // The exchange may be released inside its own completion.
    return {exchange, [](HttpExchange *done) {
                done->abandon();
                done->deleteLater();
            }};
}

HttpExchange::HttpExchange(std::shared_ptr<QNetworkAccessManager> network, Clock &clock,
                           const HttpRequest &request, HttpCompletion completion)
    : m_clock(clock), m_request(request), m_completion(std::move(completion)), m_network(std::move(network))
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
        break;
    case HttpRequest::Method::Delete:
        m_reply.reset(m_network->deleteResource(request));
        break;
    case HttpRequest::Method::Post:
        request.setHeader(QNetworkRequest::ContentLengthHeader, m_request.body.size());
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        m_reply.reset(m_network->post(request, new OneTimeUpload(m_request.body, this)));
        break;
    }
    m_reply->setParent(nullptr);
    connect(m_reply.get(), &QNetworkReply::requestSent, this, [this] { allowSilence(SilenceTimeout); });
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, [this] { allowSilence(SilenceTimeout); });
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &HttpExchange::take);
    connect(m_reply.get(), &QNetworkReply::finished, this, &HttpExchange::finish);
    allowSilence(ConnectTimeout);
    m_deadline = m_clock.after(m_request.deadline, [this] { stop(ServiceFailure::Timeout, TooSlow); });
}

void HttpExchange::allowSilence(Clock::Duration duration)
{
    if (m_completion) // else a late signal of a finished reply
        m_silence = m_clock.after(duration, [this] { stop(ServiceFailure::Timeout, TooSlow); });
}

void HttpExchange::take()
{
    allowSilence(SilenceTimeout);
    m_received += m_reply->readAll();
    if (m_received.size() > m_request.maxBytes)
        stop(ServiceFailure::BadAnswer, u"the answer is too large"_s);
}

void HttpExchange::stop(ServiceFailure kind, const QString &detail)
{
    if (m_fault)
        return;
    m_fault = {kind, m_request.url.host() + ": "_L1 + detail};
    m_reply->abort();
}

void HttpExchange::finish()
{
    if (!m_completion)
        return;
    if (!m_fault)
        take();
    m_silence.reset();
    m_deadline.reset();
    const HttpCompletion completion = std::exchange(m_completion, nullptr);
    completion(outcome());
}

void HttpExchange::abandon()
{
    m_completion = nullptr;
    m_silence.reset();
    m_deadline.reset();
    if (m_reply && m_reply->isRunning()) {
        disconnect(m_reply.get(), nullptr, this, nullptr);
        m_reply->abort();
    }
    // Release now instead of with this object: at the program's end deferred deletion does not happen, and
    // the manager's thread must not outlive the program.
    m_network.reset();
}

HttpResult HttpExchange::outcome() const
{
    if (m_fault)
        return *m_fault;
    const auto fault = [this](ServiceFailure kind, const QString &detail) {
        return TransportFault{kind, m_request.url.host() + ": "_L1 + detail};
    };
    HttpAnswer answer{m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), {}, m_received};
    for (const auto &[name, value] : m_reply->rawHeaderPairs())
        answer.headers.insert(name.toLower(), value);
    const QNetworkReply::NetworkError error = m_reply->error();
    const bool statusSaysIt = error > FirstContentError && answer.status >= FirstRefusalStatus;
    // Qt reports success for some answers whose connection closed right after the headers.
    if (error == QNetworkReply::NoError && answer.isCutShort())
        return fault(ServiceFailure::Unavailable, u"the answer was cut short"_s);
    if (error == QNetworkReply::NoError || statusSaysIt)
        return answer;
    // Qt has no separate error for a proxy that refuses the request.
    const bool byProxy =
        error == QNetworkReply::UnknownNetworkError &&
        m_network->proxyFactory()->queryProxy(QNetworkProxyQuery(m_request.url)).value(0).type() !=
            QNetworkProxy::NoProxy;
    return fault(byProxy ? ServiceFailure::Proxy : kindOfFailure(error), redacted(m_reply->errorString()));
}
