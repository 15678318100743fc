#pragma once
#include <features/delivery/FileSearching.h>
#include <features/delivery/IncomingRequestHandler.h>
#include <QList>
#include <QStringList>

/// The application as a request sees it; notes what it is told, in order.
class FakeHost final : public IncomingRequestHost, public FileSearching
{
public:
    bool windowOpen = true;
    bool contentReady = true;
    QStringList events;
    QList<ExternalRequest> searched;
    QList<ExternalRequest> parked;
    QList<base::Error> errors;

    bool bringFirstWindowForward() override
    {
        events += QStringLiteral("front");
        return windowOpen;
    }
    FileSearching *firstWindowContent() override
    {
        events += QStringLiteral("content");
        return contentReady ? this : nullptr;
    }
    void park(const ExternalRequest &request) override
    {
        events += QStringLiteral("park");
        parked += request;
    }
    void presentError(const base::Error &error) override
    {
        events += QStringLiteral("error");
        errors += error;
    }
    void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) override
    {
        events += QStringLiteral("search");
        searched += ExternalRequest{url, requestInfo};
    }
};
