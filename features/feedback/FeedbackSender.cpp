#include "FeedbackSender.h"

#include <base/LocalizedString.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto Deadline = 60s;
constexpr qsizetype MaxAnswerBytes = 64LL * 1024; // the content is not used

QString sentenceFor(ServiceFailure failure)
{
    switch (failure) {
    case ServiceFailure::Offline:
        return String::localize(u"There is no connection to the maker’s server."_s);
    case ServiceFailure::Timeout:
        return String::localize(u"The maker’s server did not answer in time."_s);
    case ServiceFailure::Insecure:
        return String::localize(u"No private connection to the maker’s server could be made."_s);
    case ServiceFailure::Proxy:
    case ServiceFailure::ForbiddenAddress:
        return commonSentence(failure);
    case ServiceFailure::BadAnswer:
        return String::localize(u"The maker’s server did not take the report."_s);
    default:
        return String::localize(u"The maker’s server is not available right now."_s);
    }
}

base::Error failure(ServiceFailure reason, const QString &detail)
{
    return {u"Feedback"_s, static_cast<int>(reason), sentenceFor(reason), detail};
}

Result<void> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return {};
    return failure(answer.isPassingFailure() ? ServiceFailure::Unavailable : ServiceFailure::BadAnswer,
                   u"status %1"_s.arg(answer.status));
}
} // namespace

HttpCall sendReport(HttpClient &client, const FeedbackReport &report, const QString &address,
                    std::function<void(const Result<void> &)> completion)
{
    HttpRequest request;
    request.method = HttpRequest::Method::Post;
    request.url = QUrl(address, QUrl::StrictMode);
    request.body = report.toJson();
    request.maxBytes = MaxAnswerBytes;
    request.deadline = Deadline;
    request.setHeader("Content-Type", "application/json");
    return client.send(
        request, HostRules::of(request.url), [completion = std::move(completion)](const HttpResult &outcome) {
            completion(outcome ? read(*outcome) : failure(outcome.error().kind, outcome.error().detail));
        });
}
