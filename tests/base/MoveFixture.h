#pragma once
#include <base/Result.h>
#include <tests/support/FaultyCalls.h>
#include <tests/support/Sandbox.h>

#include <QMetaType>

#include <memory>

/// What a disk can do: the ways of moving that the file systems at hand allow.
struct Disk
{
    bool isOther = false;
    bool canRefuseToReplace = true;
    bool canLink = true;
};
Q_DECLARE_METATYPE(Disk)

/// Two folders and a file to be moved from "here" to "there", in a new temporary folder for each test.
class MoveFixture final
{
public:
    QString folder;
    QString source;
    QString destination;

    /// Adds the column "disk" with a row for each kind of file system.
    static void addDisks();

    void startAnew();
    template <class Calls = FaultyCalls>
    std::shared_ptr<Calls> callsFor(const Disk &disk) const
    {
        auto calls = std::make_shared<Calls>();
        calls->canRefuseToReplace = disk.canRefuseToReplace;
        calls->canLink = disk.canLink;
        if (disk.isOther)
            calls->otherDisk = (folder + QStringLiteral("/there")).toUtf8();
        return calls;
    }
    Result<void> move(const std::shared_ptr<FileSystemCalls> &calls) const;
    /// Writes a file, the folders above it included, and gives its path.
    QString write(const QString &path, const QByteArray &content) const;
    void writeSource(const QByteArray &content = "subtitle") const;
    QByteArray read(const QString &path) const;
    /// Everything in "here" or "there", hidden names included.
    QStringList namesIn(const QString &name) const;

private:
    Sandbox m_sandbox;
    int m_number = 0;
};
