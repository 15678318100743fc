#include "MakersServer.h"

namespace
{
constexpr int FirstServerError = 500;
constexpr int TooManyRequests = 429;
} // namespace

HostRules MakersServer::rulesFor(const QUrl &address)
{
    if (HostRules::isLoopback(address.host()))
        return HostRules({}, HostRules::Loopback::Accepted);
    return HostRules({address.host()});
}

bool MakersServer::isPassing(int status)
{
    return status >= FirstServerError || status == TooManyRequests;
}
