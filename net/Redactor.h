#pragma once
#include <QString>

/// Removes secrets from logged text and from the details of errors. Any thread.

/// The text without keys, tokens, passwords, download addresses and registered secrets; on one line that is
/// safe for a terminal.
QString redacted(const QString &text);

/// Registers `secret` for removal by `redacted`. Texts of under four characters are ignored.
void hideSecret(const QString &secret);
