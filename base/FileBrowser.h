#pragma once
#include <QByteArray>

/// Asks the desktop's file browser over the session bus to show a file selected in its folder. Returns false
/// when there is no session bus or no file browser on it. Does not wait for the browser's window. Any thread.
bool showInBusFileBrowser(const QByteArray &fileUri);
