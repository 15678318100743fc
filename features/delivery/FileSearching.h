#pragma once
#include "ExternalRequest.h"

/// Searches subtitles for video files. The main window's content controller implements it.
class FileSearching
{
public:
    virtual ~FileSearching() = default;
    virtual void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) = 0;
};
