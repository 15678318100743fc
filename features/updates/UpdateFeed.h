#pragma once
#include "Appcast.h"

#include <net/HttpClient.h>

/// Fetches and parses the feed. HTTPS only, clear text from this machine alone, and redirects to other hosts
/// are not followed. Main thread only.
class UpdateFeed final
{
public:
    using Completion = std::function<void(const Result<AppcastFeed> &)>;

    explicit UpdateFeed(Clock &clock);

    /// Completes on a later turn, and never after the returned call was released.
    [[nodiscard]] HttpClient::Call fetch(const QString &address, Completion completion);

private:
    HttpClient m_client;
};
