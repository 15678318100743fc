#include "Workspace.h"
#include "DesktopHandlers.h"
#include "FileBrowser.h"
#include "FileManager.h"
#include "FilePaths.h"

#include <mutex>
#include <utility>

namespace
{
std::mutex workspaceMutex;

std::shared_ptr<Workspace> &installedWorkspace()
{
    static std::shared_ptr<Workspace> workspace = std::make_shared<Workspace>();
    return workspace;
}
} // namespace

Workspace::~Workspace() = default;

Workspace &Workspace::sharedWorkspace()
{
    const std::scoped_lock lock(workspaceMutex);
    return *installedWorkspace();
}

void Workspace::setSharedWorkspace(std::shared_ptr<Workspace> workspace)
{
    const std::scoped_lock lock(workspaceMutex);
    installedWorkspace() = workspace ? std::move(workspace) : std::make_shared<Workspace>();
}

bool Workspace::openURL(const QUrl &url)
{
    return url.isValid() && !url.isRelative() && openWithDefaultHandler(url.toEncoded());
}

bool Workspace::opensItself(const QString &scheme)
{
    return isFileSystemScheme(scheme);
}

bool Workspace::showInFileBrowser(const QUrl &file)
{
    const QByteArray path = FileManager::fileSystemPath(file);
    if (path.isEmpty())
        return false;
    const QUrl folder = FileManager::urlFromFileSystemPath(parentFolder(path));
    return showInBusFileBrowser(file.toEncoded()) || openFolder(folder.toEncoded());
}

std::optional<QString> Workspace::absolutePathForAppBundleWithIdentifier(const QString &identifier)
{
    return desktopEntryPath(identifier);
}
