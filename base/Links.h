#pragma once
#include <QString>

/// Places on the web. The maker's are reserved example hosts until there are real ones.
namespace Links
{
inline const QString Website = QStringLiteral("https://www.quorvane.example/");
inline const QString AppStorePage = QStringLiteral("macappstore://apps.quorvane.example/developer/quorvane");
inline const QString DonationPage = QStringLiteral("https://donate.quorvane.example/plovendix");
/// Where the subtitle service gives out application keys.
inline const QString SubtitleKeyPage = QStringLiteral("https://www.opensubtitles.com/consumers");

/// Opens a fixed address; false when nothing on this desktop takes it. An address that is no URL is a fatal
/// fault.
bool open(const QString &address);
} // namespace Links
