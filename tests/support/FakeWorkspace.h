#pragma once
#include <base/Workspace.h>
#include <QList>
#include <QStringList>
#include <functional>
#include <thread>

/// A desktop with the applications that a test installs. It takes all URLs unless the test says otherwise,
/// and keeps what it was asked to open and to show.
class FakeWorkspace final : public Workspace
{
public:
    /// Makes a new one the shared workspace. `Workspace::setSharedWorkspace({})` restores the real one.
    static std::shared_ptr<FakeWorkspace> install()
    {
        auto workspace = std::make_shared<FakeWorkspace>();
        setSharedWorkspace(workspace);
        return workspace;
    }

    bool takesURLs = true;
    QStringList refusedSchemes;
    QStringList ownSchemes; // of places that the desktop itself opens
    QStringList installed;  // identifiers of applications
    std::function<void()> whenOpened = [] {};

    QList<QUrl> opened;
    QList<QUrl> shown; // in the file browser
    std::thread::id openedOn;

    bool openURL(const QUrl &url) override
    {
        opened += url;
        openedOn = std::this_thread::get_id();
        whenOpened();
        return takesURLs && !refusedSchemes.contains(url.scheme());
    }
    bool opensItself(const QString &scheme) override { return ownSchemes.contains(scheme); }
    bool showInFileBrowser(const QUrl &file) override
    {
        shown += file;
        return takesURLs;
    }
    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier) override
    {
        if (!installed.contains(identifier))
            return std::nullopt;
        return QStringLiteral("/applications/") + identifier;
    }
};
