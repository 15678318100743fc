#pragma once
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

/// The desktop around the program: other applications and what opens a URL. Any thread.
class Workspace
{
public:
    virtual ~Workspace();

    static Workspace &sharedWorkspace();
    static void setSharedWorkspace(std::shared_ptr<Workspace> workspace);

    /// True only when a handler for the URL exists and took it.
    virtual bool openURL(const QUrl &url);
    /// Whether the desktop's virtual file system opens such URLs as folders, so that no application for their
    /// scheme is asked.
    virtual bool opensItself(const QString &scheme);
    /// Shows the item in the desktop's file browser; false when there is none.
    virtual bool showInFileBrowser(const QUrl &file);
    /// The desktop entry of an installed application, by its identifier ("com.quorvane.Tessaly"), or nothing.
    virtual std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier);
};
