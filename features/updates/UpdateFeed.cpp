#include "UpdateFeed.h"

#include <base/LocalizedString.h>
#include <net/MakersServer.h>

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
        return String::localize(
            u"The proxy of this network refused the connection. Check the proxy settings of this "
            "computer."_s);
    default:
        return String::localize(
            u"The update server is not available right now. Try again in a few minutes."_s);
    }
}

base::Error transportError(const base::Error &error)
{
    const auto failure = kindOf(error).value_or(ServiceFailure::Unavailable);
    if (failure == ServiceFailure::BadAnswer)
        return Appcast::webPage(error.detail);
    return Appcast::error(sentenceFor(failure), error.detail);
}

Result<AppcastFeed> read(const HttpAnswer &answer)
{
    if (answer.isSuccess())
        return Appcast::parse(answer.body);
    const QString status = u"status %1"_s.arg(answer.status);
    if (MakersServer::isPassing(answer.status))
        return Appcast::error(sentenceFor(ServiceFailure::Unavailable), status);
    return Appcast::noFeed(status);
}
} // namespace

HttpClient::Call fetchFeed(HttpClient &client, const QString &address,
                           std::function<void(const Result<AppcastFeed> &)> completion)
{
    HttpRequest request;
    request.url = QUrl(address, QUrl::StrictMode);
    // Allows more than the limit, so that a list that is slightly too long gets its own error.
    request.maxBytes = 4 * Appcast::MaxBytes;
    request.deadline = Deadline;
    request.setHeader("Accept", "application/rss+xml, application/xml;q=0.9, text/xml;q=0.9");
    const HostRules rules = MakersServer::rulesFor(request.url);
    const bool isPermitted = rules.accepts(request.url);
    return client.send(request, rules,
                       [isPermitted, completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
                           if (outcome)
                               return completion(read(*outcome));
                           // The client's own sentence says that the address must begin with https.
                           completion(isPermitted ? transportError(outcome.error()) : outcome.error());
                       });
}
