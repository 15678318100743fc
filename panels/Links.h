#pragma once
#include <QString>

/// The maker's places on the web. They are reserved example hosts until the maker has real ones.
namespace Links
{
inline const QString Website = QStringLiteral("https://www.quorvane.example/");
inline const QString AppStorePage = QStringLiteral("macappstore://apps.quorvane.example/developer/quorvane");
inline const QString DonationPage = QStringLiteral("https://donate.quorvane.example/plovendix");

/// Opens a fixed address; false when nothing on this desktop takes it. An address that is no URL is a fatal
/// fault.
bool open(const QString &address);
} // namespace Links
