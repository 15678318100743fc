#pragma once
#include "FeedbackReport.h"

#include <net/HttpClient.h>

/// Posts reports. HTTPS only, clear text to this machine alone; a report is sent once and follows nobody
/// elsewhere. Main thread only.
class FeedbackSender final
{
public:
    using Completion = std::function<void(const Result<void> &)>;

    explicit FeedbackSender(Clock &clock);

    /// Completes on a later turn, and never once what this gives was let go.
    [[nodiscard]] HttpClient::Call send(const FeedbackReport &report, const QString &address,
                                        Completion completion);

private:
    HttpClient m_client;
};
