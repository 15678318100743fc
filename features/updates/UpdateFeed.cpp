#include "UpdateFeed.h"

#include "UpdateErrors.h"

#include <net/MakersServer.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto Deadline = 30s;

Result<AppcastFeed> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return Appcast::parse(answer.body);
    return updateError(MakersServer::isPassing(answer.status) ? UpdateFault::Unavailable
                                                              : UpdateFault::NoFeed,
                       u"status %1"_s.arg(answer.status));
}
} // namespace

// The service name only affects the client's error texts, which are replaced by ours.
UpdateFeed::UpdateFeed(Clock &clock) : m_client(clock, ServiceName::Films) {}

HttpClient::Call UpdateFeed::fetch(const QString &address, Completion completion)
{
    HttpRequest request;
    request.url = QUrl(address, QUrl::StrictMode);
    // Allows more than the limit, so that a list that is slightly too long gets its own error.
    request.maxBytes = 4 * Appcast::MaxBytes;
    request.deadline = Deadline;
    request.setHeader("Accept", "application/rss+xml, application/xml;q=0.9, text/xml;q=0.9");
    const HostRules rules = MakersServer::rulesFor(request.url);
    const bool permitted = rules.accepts(request.url);
    return m_client.send(
        request, rules, [permitted, completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
            if (outcome)
                return completion(read(*outcome));
            const UpdateFault fault = permitted ? MakersServer::faultOf(outcome.error(), UpdateFault::WebPage)
                                                : UpdateFault::ForbiddenAddress;
            completion(updateError(fault, outcome.error().detail));
        });
}
