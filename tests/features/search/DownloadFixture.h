#pragma once
#include "MainViewFixture.h"

#include <tests/support/FakeFileManager.h>
#include <tests/support/FakeWorkspace.h>

class QFileDialog;

/// A test of downloads: a main view with a video and an empty Movies folder on the disk.
class DownloadTestCase : public MainViewTest
{
    Q_OBJECT

protected:
    /// Writes what a download gives.
    QUrl downloadedFile(const QString &name = QStringLiteral("A.srt")) const;
    /// Searches for the video and answers with one result.
    void searchVideo(const std::optional<ExternalRequestInfo> &request = {}) const;
    void downloadFirst() const;
    void finishWith(const Result<QUrl> &file) const;
    /// All of these, from the search to the save sheet or the companion. Gives the downloaded file.
    QUrl downloadVideo(const std::optional<ExternalRequestInfo> &request = {}) const;

    /// The save sheet that is up, or nothing.
    QFileDialog *sheet() const;
    /// The name in the sheet.
    QLineEdit *sheetName() const;
    void answerSheet(bool accept) const;
    /// Accepts the sheet and gives the text of the alert that follows, if one does.
    QString saveAndReadTheAlert() const;
    /// Whether that file is in the sandbox.
    bool exists(const QString &path) const;
    /// What the window says of the last delivery; empty when it says nothing.
    QString delivered() const;

    std::shared_ptr<FakeWorkspace> m_workspace;
    std::shared_ptr<FakeFileManager> m_files;
    QUrl m_video;

protected Q_SLOTS:
    void init();
    void cleanup();
};
