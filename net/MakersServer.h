#pragma once
#include "HostRules.h"
#include "ServiceError.h"

/// Rules and errors for the maker's server (updates, feedback), whose address comes from the settings. Any
/// thread.
namespace MakersServer
{
/// Allows the host of `address` only, in clear text only on this machine.
HostRules rulesFor(const QUrl &address);

/// Whether the same request may succeed later.
bool isPassing(int status);

/// Translates the error into the caller's own fault type; `badAnswer` is used for unreadable answers.
template <class Fault>
Fault faultOf(const base::Error &error, Fault badAnswer)
{
    switch (kindOf(error).value_or(ServiceFailure::Unavailable)) {
    case ServiceFailure::Offline:
        return Fault::Offline;
    case ServiceFailure::Timeout:
        return Fault::Timeout;
    case ServiceFailure::Insecure:
        return Fault::Insecure;
    case ServiceFailure::Proxy:
        return Fault::Proxy;
    case ServiceFailure::BadAnswer:
        return badAnswer;
    default:
        return Fault::Unavailable;
    }
}
} // namespace MakersServer
