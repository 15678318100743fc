#include "MoveFixture.h"

#include <base/FileManager.h>

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

void MoveFixture::startAnew()
{
    folder = m_sandbox.path(u"move-%1"_s.arg(++m_number));
    source = folder + u"/here/download.srt"_s;
    destination = folder + u"/there/Movie.en.srt"_s;
    QDir().mkpath(folder + u"/here"_s);
    QDir().mkpath(folder + u"/there"_s);
}

void MoveFixture::addDisks()
{
    QTest::addColumn<Disk>("disk");
    QTest::newRow("one disk") << Disk{};
    QTest::newRow("one disk that cannot refuse to replace") << Disk{false, false, true};
    QTest::newRow("one disk that can neither refuse nor link") << Disk{false, false, false};
    QTest::newRow("two disks") << Disk{true, true, true};
    QTest::newRow("two disks that cannot refuse to replace") << Disk{true, false, true};
    QTest::newRow("two disks that can neither refuse nor link") << Disk{true, false, false};
}

Result<void> MoveFixture::move(const std::shared_ptr<FileSystemCalls> &calls) const
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
