#pragma once
#include <QUrl>

/// The application's own URL operations. On this platform they do nothing, by design: who wants a web page
/// opened asks the shared workspace.
namespace ApplicationURLs
{
/// Always false.
bool canOpenURL(const QUrl &url);
/// Opens nothing; always false.
bool openURL(const QUrl &url);
} // namespace ApplicationURLs
