#pragma once
#include "ExternalRequest.h"
#include <base/Result.h>

class FileSearching;

/// The operations of the application that an incoming request needs.
class IncomingRequestHost
{
public:
    virtual ~IncomingRequestHost() = default;

    /// Activates the first window, in front of all others; returns false when no window is open.
    virtual bool bringFirstWindowForward() = 0;
    /// The first window's content controller; null when there is none or it takes no files.
    virtual FileSearching *firstWindowContent() = 0;
    /// Keeps the request until the main view can take it and replaces an earlier one.
    virtual void park(const ExternalRequest &request) = 0;
    /// Shows the error in the standard alert.
    virtual void presentError(const base::Error &error) = 0;
};

/// Handles the URLs by which companion applications ask for subtitles: the query items "fileurl" (the video),
/// "docid" and "sender" (the requester). Scheme, host and path are arbitrary. Main thread.
class IncomingRequestHandler final
{
public:
    explicit IncomingRequestHandler(IncomingRequestHost &host) : m_host(host) {}

    /// Starts the search that `text` asks for, or keeps it until the main view can take it. A text that is
    /// not a URL is ignored; a URL without a video shows an error.
    void handle(const std::optional<QString> &text);
    /// Starts the search for the request's file in the first window, or parks it.
    void deliver(const ExternalRequest &request);

private:
    IncomingRequestHost &m_host; // outlives us
};
