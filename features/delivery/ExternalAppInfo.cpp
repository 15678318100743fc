#include "ExternalAppInfo.h"

#include <base/Workspace.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString OwnCompanionScheme = u"plovendix-mpv"_s;
const QString OwnCompanionName = u"mpv"_s;

const QList<ExternalAppInfo> &knownCompanionApps()
{
    static const QList<ExternalAppInfo> apps = {
        {u"tessaly3"_s, u"com.quorvane.Tessaly"_s, u"Tessaly"_s},
        {u"verbrook3"_s, u"com.quorvane.Verbrook"_s, u"Verbrook"_s},
        {u"glimmet"_s, u"com.quorvane.Glimmet"_s, u"Glimmet"_s},
    };
    return apps;
}
} // namespace

QList<ExternalAppInfo> installedCompanionApps(Workspace &workspace)
{
    QList<ExternalAppInfo> installed;
    for (const ExternalAppInfo &app : knownCompanionApps()) {
        if (workspace.absolutePathForAppBundleWithIdentifier(app.identifier))
            installed.append(app);
    }
    return installed;
}

QString companionAppName(const QString &sender)
{
    if (sender == OwnCompanionScheme)
        return OwnCompanionName;
    const QList<ExternalAppInfo> &apps = knownCompanionApps();
    const auto app = std::find_if(apps.begin(), apps.end(), [&sender](const ExternalAppInfo &known) {
        return known.urlScheme == sender;
    });
    return app == apps.end() ? u"Unknown"_s : app->name;
}
