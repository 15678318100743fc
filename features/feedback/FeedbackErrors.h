#pragma once
#include <base/Result.h>

/// Why a report was not sent.
enum class FeedbackFault
{
    ForbiddenAddress = 1, // in the settings
    Offline,
    Timeout,
    Unavailable,
    Insecure,
    Proxy,
    Refused // the server refuses it
};

/// An Error with a sentence for display.
base::Error feedbackError(FeedbackFault fault, const QString &detail);
