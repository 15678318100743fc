#pragma once
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

/// Access to other applications and to URL handlers of the desktop. Any thread.
class Workspace
{
public:
    virtual ~Workspace();

    static Workspace &sharedWorkspace();
    static void setSharedWorkspace(std::shared_ptr<Workspace> workspace);

    /// Returns true only when a handler for the URL exists and accepted it.
    virtual bool openURL(const QUrl &url);
    /// Whether the desktop itself opens URLs of this scheme as places, independently of installed handlers.
    virtual bool opensItself(const QString &scheme);
    /// Shows the item in the desktop's file browser; returns false when there is none.
    virtual bool showInFileBrowser(const QUrl &file);
    /// The desktop entry of an installed application by its identifier ("com.quorvane.Tessaly"), or none.
    virtual std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier);
};
