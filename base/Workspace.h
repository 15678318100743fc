#pragma once
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

/// Access to other applications and to URL handlers of the desktop, by its desktop entries. A handler for a
/// new kind of URL is known once `update-desktop-database` has run for its folder. Any thread.
class Workspace
{
public:
    virtual ~Workspace();

    static Workspace &sharedWorkspace();
    static void setSharedWorkspace(std::shared_ptr<Workspace> workspace);

    /// Returns true only when a handler for the URL exists and accepted it. The handler gets our environment
    /// without the variables that hold secrets (PLOVENDIX_…).
    virtual bool openURL(const QUrl &url);
    /// Whether the desktop's virtual file system opens URLs of this scheme as places ("file", and with its
    /// helpers "smb", "trash", …), independently of installed handlers.
    virtual bool opensItself(const QString &scheme);
    /// Shows the item in the desktop's file browser; returns false when there is none. Does not wait for the
    /// browser's window.
    virtual bool showInFileBrowser(const QUrl &file);
    /// The desktop entry of an installed application by its identifier ("com.quorvane.Tessaly"), or none when
    /// it is not installed or its program does not exist.
    virtual std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier);

    /// Whether there is a session bus. Connecting without one would start a private bus or block.
    static bool hasSessionBus();
};

/// The application's own URL operations. They do nothing on this platform, by design: web pages are opened
/// through the shared workspace.
namespace ApplicationURLs
{
/// Always returns false.
inline bool canOpenURL(const QUrl &)
{
    return false;
}
/// Opens nothing and always returns false.
inline bool openURL(const QUrl &)
{
    return false;
}
} // namespace ApplicationURLs
