#pragma once
#include <QString>

class Workspace;

/// Whether a reply may be opened in the requested scheme. Any web page can make a request, so the reply,
/// which contains a path, must not go to a browser, a server, a disk or this program. Any thread.
bool mayBeRepliedTo(const QString &scheme, Workspace &workspace);
