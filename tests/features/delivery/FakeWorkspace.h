#pragma once
#include <base/Workspace.h>
#include <QList>
#include <QStringList>

/// A desktop with the applications a test installs, which notes the URLs it is asked to open.
class FakeWorkspace final : public Workspace
{
public:
    QStringList installed;
    bool takesURLs = true;
    QStringList ownSchemes;
    QList<QUrl> opened;

    bool opensItself(const QString &scheme) override { return ownSchemes.contains(scheme); }
    bool openURL(const QUrl &url) override
    {
        opened += url;
        return takesURLs;
    }
    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier) override
    {
        if (!installed.contains(identifier))
            return std::nullopt;
        return QStringLiteral("/applications/") + identifier;
    }
};
