#pragma once
#include "FaultyCalls.h"
#include "Sandbox.h"

/// A folder on a disk that a test fills up. Where the test may mount one, as root, it is a small file system
/// that no other process sees; everywhere, a folder for which one of the calls of writeFile fails with
/// ENOSPC.
class FullDisk final
{
public:
    enum Folder
    {
        WithTheFolder,
        WithoutTheFolder // which the program is to make
    };

    /// Adds the column "failingCall" with a row for each way in which a disk is full. It is empty for the
    /// file system that is really full.
    static void addRows(Folder folder = WithTheFolder);

    FullDisk(const Sandbox &sandbox, const QString &failingCall);
    ~FullDisk();
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

    QString path(const QString &relative) const;
    /// Everything in the folder that the test has put there, hidden names and those in folders included.
    QStringList files() const;

    void fill();
    void makeRoom();

private:
    QString m_folder;
    QString m_failingCall;
    FaultyCalls m_calls;
};
