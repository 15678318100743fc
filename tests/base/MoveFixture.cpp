#include "MoveFixture.h"

#include <base/FileManager.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

void MoveFixture::startAnew()
{
    folder = m_sandbox.path(u"move-%1"_s.arg(++m_number));
    source = folder + u"/here/download.srt"_s;
    destination = folder + u"/there/Movie.en.srt"_s;
    QDir().mkpath(folder + u"/here"_s);
    QDir().mkpath(folder + u"/there"_s);
}

std::shared_ptr<FaultyCalls> MoveFixture::callsFor(const Disk &disk) const
{
    auto calls = std::make_shared<FaultyCalls>();
    calls->canRefuseToReplace = disk.canRefuseToReplace;
    calls->canLink = disk.canLink;
    if (disk.isOther)
        calls->otherDisk = QFile::encodeName(folder + u"/there"_s);
    return calls;
}

Result<void> MoveFixture::move(const std::shared_ptr<FaultyCalls> &calls) const
{
    return FileManager(calls).moveItem(QUrl::fromLocalFile(source), QUrl::fromLocalFile(destination));
}

QString MoveFixture::write(const QString &path, const QByteArray &content) const
{
    return m_sandbox.writeFile(QDir(m_sandbox.path(u"."_s)).relativeFilePath(path), content);
}

void MoveFixture::writeSource(const QByteArray &content) const
{
    write(source, content);
}

QByteArray MoveFixture::read(const QString &path) const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(nothing)");
}

QStringList MoveFixture::namesIn(const QString &name) const
{
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(folder + u'/' + name).entryList(everything, QDir::Name);
}
