#pragma once
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A temporary home for one test process: private XDG folders, settings in a file of their own, the built
/// resources as the main bundle, and the lines printed on standard output at hand. Make it first in the test
/// object.
class Sandbox final
{
public:
    Sandbox();
    ~Sandbox();

    /// A path below the sandbox's own folder, which is empty at first and removed at the end.
    QString path(const QString &relative) const;
    /// Writes a file below the sandbox (its folders included) and gives its path.
    QString writeFile(const QString &relative, const QByteArray &content) const;

    QStringList printedLines() const;
    void clearPrintedLines();

private:
    QTemporaryDir m_folder;
};

/// Makes fatal faults of the enclosed scope observable: they throw FatalFaultCaught instead of stopping the
/// program.
struct FatalFaultCaught
{
    QString message;
};
class FatalFaultTrap final
{
public:
    FatalFaultTrap();
    ~FatalFaultTrap();
};

/// The message of the fatal fault that `act` ends in; empty when it does not.
template <class Act>
QString faultOf(const Act &act)
{
    const FatalFaultTrap trap;
    try {
        act();
    } catch (const FatalFaultCaught &fault) {
        return fault.message;
    }
    return {};
}
