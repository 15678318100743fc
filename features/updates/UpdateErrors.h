#pragma once
#include <base/Error.h>

/// Why a check for updates came to nothing. That there is no newer version is none of these.
enum class UpdateFault
{
    ForbiddenAddress = 1, // of the feed, in the settings
    Offline,
    Timeout,
    Unavailable,
    Insecure,
    Proxy,
    NoFeed,       // what came is no list of versions
    WebPage,      // what came is a page, or the server sent us elsewhere: a network that wants a login
    CutShort,     // the list ends in the middle
    TooLarge,     // the list is longer than any honest one
    Declarations, // a document type declaration, which has no place in the list
    NotSigned,    // a newer version without the maker's signature
    LinkNotSecure,
    FeedNotSigned, // the list as a whole lacks the maker's signature over its date
    FeedOutdated,  // an older list than one that was seen
    DamagedCopy,   // this program does not know its own version or whom to take updates from
    NoHandler,     // nothing opens the address; it has to be told instead
};

/// An Error with a sentence for the person. `detail` is cleaned of secrets.
Error updateError(UpdateFault fault, const QString &detail);
