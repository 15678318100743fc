#pragma once
#include "HostRules.h"
#include "ServiceError.h"

/// What the program's maker is asked for, updates and feedback, has an address from the settings and no more
/// than that: rules and refusals are the same for all of it. Any thread.
namespace MakersServer
{
/// The address' own host and no other; in clear text on this machine alone.
HostRules rulesFor(const QUrl &address);

/// Whether the same request may do better later.
bool isPassing(int status);

/// The reason in the words of whoever asked; `badAnswer` is theirs for what nobody understands.
template <class Fault>
Fault faultOf(const Error &error, Fault badAnswer)
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
