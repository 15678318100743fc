#pragma once
#include <QList>
#include <QMetaType>
#include <QString>

class Workspace;

/// One known companion application.
struct ExternalAppInfo
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)

public:
    ExternalAppInfo(const QString &scheme, const QString &appIdentifier, const QString &displayName)
        : urlScheme(scheme), identifier(appIdentifier), name(displayName)
    {
    }

    QString urlScheme;  // also what the application sends as "sender"
    QString identifier; // of its desktop entry
    QString name;

    bool operator==(const ExternalAppInfo &) const = default;
};

/// The companion applications that this program knows, in their fixed order. Any thread.
const QList<ExternalAppInfo> &knownCompanionApps();
/// The known companion applications that are installed, in the table's order; asked anew on every call.
QList<ExternalAppInfo> installedCompanionApps(Workspace &workspace);
/// The display name of the application that sends exactly this "sender": a known companion, or the one that
/// comes with this program (companions/mpv). "Unknown" for a stranger.
QString companionAppName(const QString &sender);
