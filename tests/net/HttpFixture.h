#pragma once
#include <net/RequestQueue.h>
#include <tests/support/standin/Deformation.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

/// A request that was sent, and its outcome.
struct Sent
{
    Caught<HttpAnswer, TransportFault> outcome;
    HttpCall call;

    const HttpAnswer &answer() { return outcome.value(); }
    ServiceFailure kind() { return outcome.error().kind; }
};

/// A server on this machine that answers as the test says, and a clock that the test drives. Make one per
/// test.
class HttpFixture final
{
public:
    /// `Sender` is a client or a queue.
    template <class Sender>
    static std::shared_ptr<Sent> send(Sender &sender, const HttpRequest &request,
                                      const HostRules &rules = HostRules({}, HostRules::Loopback::Accepted))
    {
        auto sent = std::make_shared<Sent>();
        sent->call = sender.send(request, rules, [weak = std::weak_ptr(sent)](const HttpResult &outcome) {
            if (const auto held = weak.lock())
                held->outcome.completion()(outcome);
        });
        return sent;
    }
    HttpRequest request(HttpRequest::Method method = HttpRequest::Method::Get,
                        const QString &path = QStringLiteral("/start")) const
    {
        HttpRequest made;
        made.method = method;
        made.url = server.url(path);
        return made;
    }
    /// At a host of the Internet.
    static HttpRequest farRequest()
    {
        HttpRequest made;
        made.url = QUrl(QStringLiteral("https://api.opensubtitles.com/api/v1/subtitles?query=x"));
        made.setHeader("Api-Key", "abc");
        return made;
    }

    ManualClock clock;
    ServedAnswer answer = jsonAnswer(200, R"({"data":[]})");
    std::function<ServedAnswer(const ReceivedRequest &)> served = [this](const auto &) { return answer; };
    LoopbackServer server{[this](const ReceivedRequest &received) { return served(received); }};
};
