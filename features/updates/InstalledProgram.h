#pragma once
#include <QByteArray>
#include <QString>

class Bundle;

/// The running program's data for updates. A plain value.
struct InstalledProgram
{
    QString identifier;
    QString version;
    QByteArray publicKey; // the key that updates must be signed with

    /// Read from the bundle's information dictionary; absent entries are empty.
    static InstalledProgram ofBundle(const Bundle &bundle);
};
