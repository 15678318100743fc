#include "FeedbackSender.h"

#include "FeedbackErrors.h"

#include <net/MakersServer.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto Deadline = 60s;
constexpr qsizetype MaxAnswerBytes = 64LL * 1024; // the content is not used

Result<void> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return {};
    return feedbackError(MakersServer::isPassing(answer.status) ? FeedbackFault::Unavailable
                                                                : FeedbackFault::Refused,
                         u"status %1"_s.arg(answer.status));
}
} // namespace

// The service name only affects the client's error texts, which are replaced by ours.
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
    const HostRules rules = MakersServer::rulesFor(request.url);
    const bool permitted = rules.accepts(request.url);
    return m_client.send(request, rules,
                         [permitted, completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
                             if (outcome)
                                 return completion(read(*outcome));
                             const FeedbackFault fault =
                                 permitted ? MakersServer::faultOf(outcome.error(), FeedbackFault::Refused)
                                           : FeedbackFault::ForbiddenAddress;
                             completion(feedbackError(fault, outcome.error().detail));
                         });
}
