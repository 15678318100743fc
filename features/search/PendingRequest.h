#pragma once
#include <features/delivery/ExternalRequest.h>
#include <optional>

/// Keeps at most one request of a companion application until the main view has loaded. The application
/// delegate implements it. Main thread only.
class PendingRequest
{
public:
    virtual ~PendingRequest() = default;

    virtual std::optional<ExternalRequest> externalRequest() const = 0;
    virtual void setExternalRequest(const std::optional<ExternalRequest> &request) = 0;

    /// The application's holder, or null.
    static PendingRequest *shared();
    static void setShared(PendingRequest *holder);
};
