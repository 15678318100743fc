#pragma once
#include "Appcast.h"

#include <net/HttpClient.h>

/// Fetches the feed and reads it. HTTPS only, clear text from this machine alone, and never from another host
/// than the one asked. Main thread only.
class UpdateFeed final
{
public:
    using Completion = std::function<void(const Result<AppcastFeed> &)>;

    explicit UpdateFeed(Clock &clock);

    /// Completes on a later turn, and never once what this gives was let go.
    [[nodiscard]] HttpClient::Call fetch(const QString &address, Completion completion);

private:
    HttpClient m_client;
};
