#pragma once
#include "MainViewFixture.h"

#include <tests/support/FakeFileManager.h>
#include <tests/support/FakeWorkspace.h>

class QFileDialog;

/// A main view with a video and an empty Movies folder on the disk, and the steps of a download. A test's
/// base.
class DownloadFixture
{
protected:
    void setUp();
    void tearDown();

    QUrl downloadedFile(const QString &name = QStringLiteral("A.srt")) const;
    /// The save sheet that is up, or nothing.
    QFileDialog *sheet() const;
    /// Searches for the video and answers with one result.
    void searchVideo(const std::optional<ExternalRequestInfo> &request = {}) const;
    void downloadFirst() const;
    void finishWith(const QUrl &file) const;
    void answerSheet(bool accept) const;

    static ExternalRequestInfo tessaly();
    static base::Error refusal();

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
    std::shared_ptr<FakeWorkspace> m_workspace;
    std::shared_ptr<FakeFileManager> m_files;
    QUrl m_video;
};
