#pragma once
#include <QUrl>

/// The application's own URL operations. They do nothing on this platform, by design: web pages are opened
/// through the shared workspace.
namespace ApplicationURLs
{
/// Always returns false.
bool canOpenURL(const QUrl &url);
/// Opens nothing and always returns false.
bool openURL(const QUrl &url);
} // namespace ApplicationURLs
