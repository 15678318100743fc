#pragma once
#include <QString>

/// Makes text from archives, catalogues and servers safe for a terminal: one line, without control and format
/// characters, so that it contains no escape sequences or direction changes. Line ends and tabs become
/// spaces. Any thread.
QString terminalText(const QString &text);
