#pragma once
#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <optional>

/// What the program was started with.
struct CommandLine
{
    QStringList uris;             // files (as file URLs) and URLs to serve, in order
    std::optional<QString> print; // what to print instead of running: help or version
    std::optional<QString> error; // what is wrong with the arguments
};

/// Reads the arguments after the program's name, as the bytes the system gave: a file name need not be UTF-8.
/// Relative names are taken from `workingDirectory`. "--" ends the options.
CommandLine parseCommandLine(const QByteArrayList &arguments, const QByteArray &workingDirectory);
