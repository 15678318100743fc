#pragma once
#include <QString>

/// What a maker wrote about a version as plain text: markup becomes lines and bullets, scripts, styles and
/// pictures go, and nothing is ever fetched or obeyed. Signs that would turn the direction of the text or
/// control a device are left out; a very long text ends with an ellipsis. A plain function, any thread.
QString plainReleaseNotes(const QString &notes);
