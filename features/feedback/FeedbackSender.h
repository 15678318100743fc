#pragma once
#include "KeptReports.h"

#include <net/HttpClient.h>

/// Posts a report. HTTPS only, clear text to this machine alone; a report is sent once and redirects are not
/// followed. Completes on a later turn with a sentence for the person if it failed, and never after the
/// returned call was released. Main thread only.
[[nodiscard]] HttpCall sendReport(HttpClient &client, const FeedbackReport &report, const QString &address,
                                  std::function<void(const Result<void> &)> completion);
