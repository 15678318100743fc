#pragma once
#include "FeedbackReport.h"

#include <net/HttpClient.h>

/// Posts reports. HTTPS only, clear text to this machine alone; a report is sent once and redirects are not
/// followed. Main thread only.
class FeedbackSender final
{
public:
    using Completion = std::function<void(const Result<void> &)>;

    explicit FeedbackSender(Clock &clock);

    /// Completes on a later turn, and never after the returned call was released.
    [[nodiscard]] HttpClient::Call send(const FeedbackReport &report, const QString &address,
                                        Completion completion);

private:
    HttpClient m_client;
};
