#pragma once
#include <base/FileSystemCalls.h>

#include <QString>
#include <QStringList>

/// The real system calls, of which one fails as the test says, on file systems that can do as much as the
/// test says.
class FaultyCalls final : public FileSystemCalls
{
public:
    /// Names below this folder are on another file system than the rest.
    QByteArray otherDisk;
    bool canRefuseToReplace = true;
    bool canLink = true;
    /// At most so many bytes are written at once, each time after one interruption.
    std::size_t writesAtMost = 0;

    /// The call with this number, counted from 1, fails with this errno value; 0 for none.
    int failingCall = 0;
    int failure = 0;
    /// Every call of this name fails with the value, too.
    QString failingName;

    QStringList made;
    int openDescriptors = 0;

    int renameWithoutReplacing(const QByteArray &from, const QByteArray &to) override;
    int rename(const QByteArray &from, const QByteArray &to) override;
    int link(const QByteArray &from, const QByteArray &to) override;
    int unlink(const QByteArray &path) override;
    int moveToTrash(const QByteArray &path) override;
    int makeFolder(const QByteArray &path) override;
    int listFolder(const QByteArray &path, QList<QByteArray> &names) override;
    int status(const QByteArray &path, struct stat &status) override;
    int statusOfTarget(const QByteArray &path, struct stat &status) override;
    int statusOfOpen(int descriptor, struct stat &status) override;
    int open(const QByteArray &path, int flags, mode_t mode) override;
    ssize_t read(int descriptor, char *bytes, std::size_t size) override;
    ssize_t write(int descriptor, const char *bytes, std::size_t size) override;
    int setMode(int descriptor, mode_t mode) override;
    int setTimes(int descriptor, const struct stat &status) override;
    int flush(int descriptor) override;
    int duplicate(int descriptor) override;
    int lock(int descriptor) override;
    int close(int descriptor) override;

private:
    int faultOf(const char *name);
    bool areOnTwoDisks(const QByteArray &from, const QByteArray &to) const;

    bool m_wasInterrupted = false;
};
