#pragma once
#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <optional>

/// The parsed command line.
struct CommandLine
{
    QStringList uris;             // files (as file URLs) and URLs to open, in order
    std::optional<QString> print; // the text to print instead of running: help or version
    std::optional<QString> error; // the fault of the arguments
};

/// Parses the arguments after the program's name. They are bytes, because a file name need not be UTF-8.
/// Relative names are resolved against `workingDirectory`. "--" ends the options.
CommandLine parseCommandLine(const QByteArrayList &arguments, const QByteArray &workingDirectory);
