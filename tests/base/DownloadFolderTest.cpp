#include <base/DownloadFolder.h>
#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <utime.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DownloadFolderTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

    static QByteArray contentOf(const QUrl &url)
    {
        QFile file(url.toLocalFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    static void makeOld(const QString &folder)
    {
        const time_t longAgo = QDateTime::currentSecsSinceEpoch() - 2'592'000;
        const utimbuf times = {longAgo, longAgo};
        QCOMPARE(::utime(QFile::encodeName(folder).constData(), &times), 0);
    }

private Q_SLOTS:
    void everyDownloadHasAFolderOfItsOwn()
    {
        QCOMPARE(DownloadFolder::standardPath(), m_sandbox.path(u"xdg_cache_home/Plovendix/downloads"_s));
        const DownloadFolder folder;
        const Result<QUrl> first = folder.publish(u"a.srt"_s, "one");
        const Result<QUrl> second = folder.publish(u"a.srt"_s, {});
        QVERIFY(first && second);
        QVERIFY(*first != *second);
        QCOMPARE(first->fileName(), u"a.srt"_s);
        QVERIFY(first->toLocalFile().startsWith(DownloadFolder::standardPath() + u"/get-"_s));
        QCOMPARE(contentOf(*first), QByteArray("one"));
        QCOMPARE(contentOf(*second), QByteArray());
    }

    void folderThatCannotBeMadeIsAnError()
    {
        const QString file = m_sandbox.writeFile(QStringLiteral("file"), "no folder");
        const DownloadFolder folder(file + QStringLiteral("/downloads"));
        const Result<QUrl> url = folder.publish(QStringLiteral("a.srt"), "one");
        QVERIFY(!url);
        QCOMPARE(url.error().domain, QStringLiteral("Downloads"));
        QCOMPARE(url.error().localizedDescription,
                 u"The subtitle could not be stored in “%1/downloads”."
                 " The system reports an error: Not a directory."_s.arg(file));
    }

    void fullDiskIsAnErrorWithoutAFile_data() { FullDisk::addRows(FullDisk::WithoutTheFolder); }
    void fullDiskIsAnErrorWithoutAFile()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        const DownloadFolder folder(disk.path(u"downloads"_s));
        disk.fill();
        const Result<QUrl> url = folder.publish(u"a.srt"_s, "subtitle");
        QVERIFY(!url);
        QVERIFY(url.error().localizedDescription.endsWith(u"There is not enough free space."_s));
        QCOMPARE(disk.files(), QStringList());
        QCOMPARE(QDir(disk.path(u"downloads"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
        disk.makeRoom();
        const Result<QUrl> again = folder.publish(u"a.srt"_s, "subtitle");
        QVERIFY(again);
        QCOMPARE(contentOf(*again), QByteArray("subtitle"));
    }

    void oldDownloadsAreClearedAndNothingElse()
    {
        const QString path = m_sandbox.path(QStringLiteral("aged"));
        const DownloadFolder folder(path);
        const Result<QUrl> old = folder.publish(QStringLiteral("old.srt"), "old");
        const Result<QUrl> young = folder.publish(QStringLiteral("young.srt"), "young");
        QVERIFY(old && young);
        const QString foreign = m_sandbox.writeFile(QStringLiteral("aged/keep/mine.srt"), "mine");
        const QString outside = m_sandbox.writeFile(QStringLiteral("outside/mine.srt"), "mine");
        const QString link = path + QStringLiteral("/get-link");
        QVERIFY(QFile::link(QFileInfo(outside).path(), link));
        makeOld(QFileInfo(old->toLocalFile()).path());
        makeOld(QFileInfo(foreign).path());
        makeOld(QFileInfo(outside).path());

        folder.clearOlderThan(7 * 24h);

        QVERIFY(!QFileInfo::exists(QFileInfo(old->toLocalFile()).path()));
        QVERIFY(QFileInfo::exists(young->toLocalFile()));
        QVERIFY(QFileInfo::exists(foreign));
        QVERIFY(QFileInfo::exists(outside));
    }
};

PLOVENDIX_TEST(DownloadFolderTest)
#include "DownloadFolderTest.moc"
