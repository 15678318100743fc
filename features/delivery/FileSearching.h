#pragma once
#include "ExternalRequest.h"

/// Takes video files to search subtitles for: the main window's content controller, as the drop target
/// and incoming requests see it.
class FileSearching
{
public:
    virtual ~FileSearching() = default;
    virtual void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) = 0;
};
