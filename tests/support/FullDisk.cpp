#include "FullDisk.h"

#include <base/FileWriting.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sched.h>
#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto Filler = ".filler"_L1;

/// Gives this process mounts that no other process sees, which only root may do: a namespace of users would
/// allow it to everybody, but Qt Test has started a thread by now, and a process with threads cannot enter
/// one.
bool enterMountNamespace()
{
    return ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountSmallFileSystem(const QString &folder)
{
    static const bool hasOwnMounts = enterMountNamespace();
    return hasOwnMounts &&
           ::mount("full-disk", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=64k") == 0;
}

bool canMount()
{
    const QTemporaryDir folder;
    const bool isMounted = mountSmallFileSystem(folder.path());
    if (isMounted)
        ::umount2(QFile::encodeName(folder.path()).constData(), MNT_DETACH);
    return isMounted;
}
} // namespace

void FullDisk::addRows(Folder folder)
{
    QTest::addColumn<QString>("failingCall");
    if (canMount())
        QTest::newRow("a full file system") << QString();
    for (const char *name : {"open", "write", "flush", "close", "rename"})
        QTest::newRow(name) << QString::fromLatin1(name);
    if (folder == WithoutTheFolder)
        QTest::newRow("makeFolder") << u"makeFolder"_s;
}

FullDisk::FullDisk(const Sandbox &sandbox, const QString &failingCall) : m_failingCall(failingCall)
{
    const QString base = sandbox.path(u"full-disk-"_s);
    for (int number = 1; m_folder.isEmpty() || QFileInfo::exists(m_folder); ++number)
        m_folder = base + QString::number(number);
    QDir().mkpath(m_folder);
    if (m_failingCall.isEmpty() && !mountSmallFileSystem(m_folder))
        qFatal("No file system could be mounted at %s", qUtf8Printable(m_folder));
    setCallsOfWriteFile(&m_calls);
}

FullDisk::~FullDisk()
{
    setCallsOfWriteFile(nullptr);
    if (m_failingCall.isEmpty())
        ::umount2(QFile::encodeName(m_folder).constData(), MNT_DETACH);
}

QString FullDisk::path(const QString &relative) const
{
    return m_folder + u'/' + relative;
}

QStringList FullDisk::files() const
{
    QStringList names;
    QDirIterator all(m_folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext())
        names += QDir(m_folder).relativeFilePath(all.next());
    names.removeOne(Filler);
    names.sort();
    return names;
}

void FullDisk::fill()
{
    m_calls.failingName = m_failingCall;
    m_calls.failure = ENOSPC;
    if (!m_failingCall.isEmpty())
        return;
    const QByteArray page(4096, 'f');
    QFile filler(path(Filler));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("The file system could not be filled");
    while (filler.write(page) > 0) {
    }
}

void FullDisk::makeRoom()
{
    m_calls.failingName.clear();
    if (m_failingCall.isEmpty() && !QFile::remove(path(Filler)))
        qFatal("The filler could not be removed");
}
