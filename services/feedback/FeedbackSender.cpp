#include "FeedbackSender.h"

#include "FeedbackErrors.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto Deadline = 60s;
constexpr qsizetype MaxAnswerBytes = 64LL * 1024; // nobody reads it
constexpr int FirstServerError = 500;
constexpr int TooManyRequests = 429;

HostRules rulesFor(const QUrl &address)
{
    if (HostRules::isLoopback(address.host()))
        return HostRules({}, HostRules::Loopback::Accepted);
    return HostRules({address.host()});
}

FeedbackFault faultOf(const Error &error)
{
    switch (kindOf(error).value_or(Kind::Unavailable)) {
    case Kind::Offline:
        return FeedbackFault::Offline;
    case Kind::Timeout:
        return FeedbackFault::Timeout;
    case Kind::Insecure:
        return FeedbackFault::Insecure;
    case Kind::Proxy:
        return FeedbackFault::Proxy;
    case Kind::BadAnswer:
        return FeedbackFault::Refused;
    default:
        return FeedbackFault::Unavailable;
    }
}

Result<void> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return {};
    const bool passing = answer.status >= FirstServerError || answer.status == TooManyRequests;
    return feedbackError(passing ? FeedbackFault::Unavailable : FeedbackFault::Refused,
                         u"status %1"_s.arg(answer.status));
}
} // namespace

// The name only chooses the words of the client's own errors, which nobody sees: they are told in ours.
FeedbackSender::FeedbackSender(Clock &clock) : m_client(clock, ServiceName::Films) {}

HttpClient::Call FeedbackSender::send(const FeedbackReport &report, const QString &address,
                                      Completion completion)
{
    HttpRequest request;
    request.method = HttpRequest::Method::Post;
    request.url = QUrl(address, QUrl::StrictMode);
    request.body = report.toJson();
    request.maxBytes = MaxAnswerBytes;
    request.deadline = Deadline;
    request.setHeader("Content-Type", "application/json");
    const HostRules rules = rulesFor(request.url);
    const bool permitted = rules.accepts(request.url);
    return m_client.send(request, rules,
                         [permitted, completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
                             if (outcome)
                                 return completion(read(*outcome));
                             const FeedbackFault fault =
                                 permitted ? faultOf(outcome.error()) : FeedbackFault::ForbiddenAddress;
                             completion(feedbackError(fault, outcome.error().detail));
                         });
}
