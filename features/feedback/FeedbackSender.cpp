#include "FeedbackSender.h"

#include <base/LocalizedString.h>
#include <net/MakersServer.h>

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
        return String::localize(
            u"The proxy of this network refused the connection. Check the proxy settings of this "
            "computer."_s);
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
    return failure(MakersServer::isPassing(answer.status) ? ServiceFailure::Unavailable
                                                          : ServiceFailure::BadAnswer,
                   u"status %1"_s.arg(answer.status));
}
} // namespace

HttpClient::Call sendReport(HttpClient &client, const FeedbackReport &report, const QString &address,
                            std::function<void(const Result<void> &)> completion)
{
    HttpRequest request;
    request.method = HttpRequest::Method::Post;
    request.url = QUrl(address, QUrl::StrictMode);
    request.body = report.toJson();
    request.maxBytes = MaxAnswerBytes;
    request.deadline = Deadline;
    request.setHeader("Content-Type", "application/json");
    const HostRules rules = MakersServer::rulesFor(request.url);
    const bool isPermitted = rules.accepts(request.url);
    return client.send(
        request, rules, [isPermitted, completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
            if (outcome)
                return completion(read(*outcome));
            const base::Error &error = outcome.error();
            // The client's own sentence says that the address must begin with https.
            if (!isPermitted)
                return completion(error);
            completion(failure(kindOf(error).value_or(ServiceFailure::Unavailable), error.detail));
        });
}
