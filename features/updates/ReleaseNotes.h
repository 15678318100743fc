#pragma once
#include <QString>

/// Release notes as plain text: markup becomes lines and bullets, scripts, styles and pictures are removed,
/// and nothing is fetched or executed. Control characters and those that change the text direction are
/// removed; a very long text ends with an ellipsis. A plain function, any thread.
QString plainReleaseNotes(const QString &notes);
