#pragma once
#include "Appcast.h"

#include <net/HttpClient.h>

/// Fetches and parses the feed. HTTPS only, clear text from this machine alone, and redirects to other hosts
/// are not followed. Completes on a later turn, and never after the returned call was released. Main thread
/// only.
[[nodiscard]] HttpCall fetchFeed(HttpClient &client, const QString &address,
                                 std::function<void(const Result<AppcastFeed> &)> completion);
