#include "UpdateFeed.h"

#include <base/LocalizedString.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto Deadline = 30s;

QString sentenceFor(ServiceFailure failure)
{
    switch (failure) {
    case ServiceFailure::Offline:
        return String::localize(
            u"There is no connection to the update server. Check your network and try again."_s);
    case ServiceFailure::Timeout:
        return String::localize(u"The update server did not answer in time. Try again in a moment."_s);
    case ServiceFailure::Insecure:
        return String::localize(
            u"No private connection to the update server could be made. Check the date of this computer, "
            "and whether this network can be trusted."_s);
    case ServiceFailure::Proxy:
    case ServiceFailure::ForbiddenAddress:
        return commonSentence(failure);
    default:
        return String::localize(
            u"The update server is not available right now. Try again in a few minutes."_s);
    }
}

base::Error transportError(const TransportFault &fault)
{
    if (fault.kind == ServiceFailure::BadAnswer)
        return Appcast::webPage(fault.detail);
    return Appcast::error(sentenceFor(fault.kind), fault.detail);
}

Result<AppcastFeed> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return Appcast::parse(answer.body);
    const QString status = u"status %1"_s.arg(answer.status);
    if (answer.isPassingFailure())
        return Appcast::error(sentenceFor(ServiceFailure::Unavailable), status);
    return Appcast::noFeed(status);
}
} // namespace

HttpCall fetchFeed(HttpClient &client, const QString &address,
                   std::function<void(const Result<AppcastFeed> &)> completion)
{
    HttpRequest request;
    request.url = QUrl(address, QUrl::StrictMode);
    // Allows more than the limit, so that a list that is slightly too long gets its own error.
    request.maxBytes = 4 * Appcast::MaxBytes;
    request.deadline = Deadline;
    request.setHeader("Accept", "application/rss+xml, application/xml;q=0.9, text/xml;q=0.9");
    return client.send(request, HostRules::of(request.url),
                       [completion = std::move(completion)](const HttpResult &outcome) {
                           completion(outcome ? read(*outcome) : transportError(outcome.error()));
                       });
}
