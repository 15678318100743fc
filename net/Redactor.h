#pragma once
#include <QString>

/// Keeps secrets out of what is logged or kept as the detail of an error. Any thread.

/// The text without keys, tokens, passwords and download addresses, and without any text made known as a
/// secret; on one line, as a terminal may show it.
QString redacted(const QString &text);

/// From now on `secret` appears nowhere in what `redacted` gives. Texts of under four characters are left
/// alone.
void hideSecret(const QString &secret);
