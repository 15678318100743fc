#pragma once
#include "MainViewFixture.h"

#include <base/FileManager.h>
#include <base/Workspace.h>

#include <thread>

class QFileDialog;

/// Keeps what it is asked to open or show, in place of the desktop.
struct OpenedURLs final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        opened += url;
        openedOn = std::this_thread::get_id();
        return accepts;
    }
    bool opensItself(const QString &) override { return false; }
    bool showInFileBrowser(const QUrl &file) override
    {
        shown += file;
        return true;
    }
    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &) override { return {}; }

    QList<QUrl> opened;
    QList<QUrl> shown;
    std::thread::id openedOn;
    bool accepts = true;
};

/// The real file manager with a Movies folder of the test's own; an empty one is none.
struct FilesWithMovies final : FileManager
{
    explicit FilesWithMovies(const QString &movies) : folder(movies) {}
    std::optional<QUrl> moviesFolder() const override { return folder.isEmpty() ? std::nullopt : path(); }
    std::optional<QUrl> path() const { return QUrl::fromLocalFile(folder); }
    QString folder;
};

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
    std::shared_ptr<OpenedURLs> m_workspace;
    std::shared_ptr<FilesWithMovies> m_files;
    QUrl m_video;
};
