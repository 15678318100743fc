#pragma once

class MainViewController;

/// A prompt that may be shown before a download; a room above this one decides. Main thread only.
class DownloadPrompt
{
public:
    virtual ~DownloadPrompt() = default;

    /// Shows a prompt over `presenter` if one is due, and returns whether it does. The prompt later starts
    /// the download through `downloadSelectedSubtitle`, or drops it.
    virtual bool presentBeforeDownload(MainViewController &presenter) = 0;
    /// Called when a subtitle was saved or delivered to the requesting application.
    virtual void noteDelivery() = 0;
};
