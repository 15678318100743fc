#pragma once
#include "FatalFault.h"
#include "URLComponents.h"
#include "Workspace.h"

/// Web addresses. The maker's addresses are reserved example hosts until real ones exist.
namespace Links
{
inline const QString Website = QStringLiteral("https://www.quorvane.example/");
inline const QString AppStorePage = QStringLiteral("macappstore://apps.quorvane.example/developer/quorvane");
inline const QString DonationPage = QStringLiteral("https://donate.quorvane.example/plovendix");
/// The page on which the subtitle service gives out application keys.
inline const QString SubtitleKeyPage = QStringLiteral("https://www.opensubtitles.com/consumers");

/// Opens a fixed address; returns false when no application of the desktop opens it. An invalid address is a
/// fatal fault.
inline bool open(const QString &address)
{
    const auto url = parseURLString(address);
    if (!url)
        fatalFault(QStringLiteral("The fixed address \"%1\" is no URL").arg(address));
    return Workspace::sharedWorkspace().openURL(*url);
}
} // namespace Links
