#pragma once
#include <QString>

/// Makes a plain file name from a text of a server or archive: no folders, no control or text-direction
/// characters, no leading dot, at most 200 bytes. Always ends with `extension` (given without its dot); an
/// empty result becomes "subtitle". Any thread.
QString safeFileName(const QString &text, const QString &extension);

/// The format's name as a file extension: lower case, letters and digits only, at most eight; "txt" when none
/// is left.
QString safeExtension(const QString &format);
