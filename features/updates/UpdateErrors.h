#pragma once
#include <base/Result.h>

/// Why a check for updates failed. Finding no newer version is not a failure.
enum class UpdateFault
{
    ForbiddenAddress = 1, // of the feed, in the settings
    Offline,
    Timeout,
    Unavailable,
    Insecure,
    Proxy,
    NoFeed,       // the answer is not a list of versions
    WebPage,      // the answer is a page or a redirect elsewhere: a network that requires a login
    CutShort,     // the list is truncated
    TooLarge,     // the list is longer than a valid one
    Declarations, // a document type declaration, which is not allowed in the list
    NotSigned,    // a newer version without the maker's signature
    LinkNotSecure,
    FeedNotSigned, // the list lacks the maker's signature over its date
    FeedOutdated,  // the list is older than one seen before
    DamagedCopy,   // this program lacks its version or the maker's key
    NoHandler,     // no application opens the address, which is shown instead
};

/// An Error with a sentence for display. Secrets are removed from `detail`.
base::Error updateError(UpdateFault fault, const QString &detail);
