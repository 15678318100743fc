#pragma once
#include <QByteArray>
#include <QString>

class Bundle;

/// The program that runs, as far as updates are concerned. A plain value.
struct InstalledProgram
{
    QString identifier;
    QString version;
    QByteArray publicKey; // of whom this program takes updates from

    /// What the bundle's information dictionary says; empty where it says nothing.
    static InstalledProgram ofBundle(const Bundle &bundle);
};
