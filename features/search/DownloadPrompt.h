#pragma once

class MainViewController;

/// What may come up in front of a download that a person asks for: a room above this one decides. Main thread
/// only.
class DownloadPrompt
{
public:
    virtual ~DownloadPrompt() = default;

    /// Whether a prompt is up now, presented by `presenter`. It then starts the download itself, through
    /// `downloadSelectedSubtitle`, or leaves it.
    virtual bool presentBeforeDownload(MainViewController &presenter) = 0;
    /// A subtitle was saved where the person wanted it, or handed to the application that asked.
    virtual void noteDelivery() = 0;

    /// The program's prompt, or nothing when there is none.
    static DownloadPrompt *shared();
    static void setShared(DownloadPrompt *prompt);
};
