#pragma once
#include <QString>

/// Text from archives, catalogues and servers as a terminal may show it: on one line, without control and
/// format characters, so that it starts no escape sequence and turns no direction of writing. Line ends and
/// tabs become spaces. Any thread.
QString terminalText(const QString &text);
