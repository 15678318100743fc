#pragma once
#include "ExternalRequest.h"
#include <base/Error.h>

class FileSearching;

/// What an incoming request needs of the application above.
class IncomingRequestHost
{
public:
    virtual ~IncomingRequestHost() = default;

    /// Makes the first window the active one, in front of all; false when no window is open.
    virtual bool bringFirstWindowForward() = 0;
    /// The first window's content controller; null when it has none yet or one that takes no files.
    virtual FileSearching *firstWindowContent() = 0;
    /// Keeps the request until the main view can take it, in place of any it kept before.
    virtual void park(const ExternalRequest &request) = 0;
    /// Shows the error in the standard alert.
    virtual void presentError(const Error &error) = 0;
};

/// Takes the URLs by which companion applications ask for subtitles: the query items "fileurl" (the video),
/// "docid" and "sender" (who asks). Scheme, host and path are free. Main thread.
class IncomingRequestHandler final
{
public:
    explicit IncomingRequestHandler(IncomingRequestHost &host) : m_host(host) {}

    /// Starts the search that `text` asks for, or parks it until the main view can take it. A text that is no
    /// URL is ignored, a URL without a video is an error shown.
    void handle(const std::optional<QString> &text);

private:
    void deliver(const ExternalRequest &request);

    IncomingRequestHost &m_host; // outlives us
};
