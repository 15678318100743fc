#pragma once
#include <QString>

/// A plain file name made of text that a server or an archive sent: no folders, no control or text-direction
/// characters, no leading dot, at most 200 bytes. `extension` (without its dot) always ends it; a text of
/// which nothing is left gives "subtitle". Any thread.
QString safeFileName(const QString &text, const QString &extension);

/// The format's name as a file extension: lower case, letters and digits only, at most eight; "txt" when none
/// is left.
QString safeExtension(const QString &format);
