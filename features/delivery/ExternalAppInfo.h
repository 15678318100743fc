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

    QString urlScheme;  // also the value of "sender" in its requests
    QString identifier; // of its desktop entry
    QString name;

    bool operator==(const ExternalAppInfo &) const = default;
};

/// The installed ones of the known companion applications, in their fixed order; looked up on every call.
/// Any thread.
QList<ExternalAppInfo> installedCompanionApps(Workspace &workspace);
/// The display name of the application with exactly this "sender": a known companion, or the one shipped with
/// this program (companions/mpv). "Unknown" for others.
QString companionAppName(const QString &sender);
