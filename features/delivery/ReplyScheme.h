#pragma once
#include <QString>

class Workspace;

/// Whether a reply may be opened in the scheme that a request names. Any web page can make a request, so the
/// reply, which holds a path, never goes to a browser, a server, a disk or this program itself. Any thread.
bool mayBeRepliedTo(const QString &scheme, Workspace &workspace);
