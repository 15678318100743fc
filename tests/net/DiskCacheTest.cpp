#include <net/DiskCache.h>
#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DiskCacheTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { cache().clear(); }

    void givesBackWhatWasStored()
    {
        cache().store(u"key"_s, entry("body"));
        const auto found = cache().find(u"key"_s, m_now);
        QVERIFY(found);
        QCOMPARE(found->body, "body");
        QCOMPARE(found->etag, "W/\"1\"");
        QVERIFY(!cache().find(u"other key"_s, m_now));
    }

    void freshnessEnds()
    {
        const DiskCache::Entry one = entry("body");
        QVERIFY(one.isFresh(m_now));
        QVERIFY(one.isFresh(m_now.addSecs(3599)));
        QVERIFY(!one.isFresh(m_now.addSecs(3600)));
        // The clock was set back: nobody knows how old it is.
        QVERIFY(!one.isFresh(m_now.addSecs(-1)));
    }

    void tooOldIsGoneWhateverItSays()
    {
        DiskCache::Entry lasting = entry("body");
        lasting.expires = m_now.addYears(10);
        cache().store(u"key"_s, lasting);
        QVERIFY(cache().find(u"key"_s, m_now.addDays(99)));
        QVERIFY(!cache().find(u"key"_s, m_now.addDays(101)));
    }

    void damagedFilesAreMisses_data()
    {
        QTest::addColumn<int>("damage");
        for (int damage = 0; damage < 4; ++damage)
            QTest::addRow("%d", damage) << damage;
    }
    void damagedFilesAreMisses()
    {
        QFETCH(const int, damage);
        cache().store(u"key"_s, entry(QByteArray(1000, 'x')));
        QFile file(onlyFile());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray content = file.readAll();
        if (damage == 0)
            content.truncate(content.size() / 2);
        else if (damage == 1)
            content[content.size() - 10] = 'y';
        else if (damage == 2)
            content.clear();
        else
            content.fill('\xFF');
        file.resize(0);
        file.seek(0);
        file.write(content);
        file.close();
        QVERIFY(!cache().find(u"key"_s, m_now));
    }

    void filesOfOtherKeysAreNoAnswer()
    {
        cache().store(u"one"_s, entry("body"));
        const QString path = onlyFile();
        cache().store(u"two"_s, entry("other"));
        QStringList paths = files();
        paths.removeOne(path);
        QVERIFY(QFile::remove(paths.constFirst()));
        QVERIFY(QFile::rename(path, paths.constFirst()));
        QVERIFY(!cache().find(u"two"_s, m_now));
    }

    void onlyThePersonReadsIt()
    {
        cache().store(u"key"_s, entry("body"));
        const QFile::Permissions others =
            QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(onlyFile()) & others));
    }

    void pruningKeepsTheNewest()
    {
        for (int i = 0; i < 3; ++i) {
            cache().store(QString::number(i), entry(QByteArray(1000, 'x')));
            QFile file(m_sandbox.path(u"cache"_s) + u'/' + newestFile());
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(m_now.addSecs(i), QFileDevice::FileModificationTime));
        }
        cache().prune(m_now.addSecs(10), 2500);
        QVERIFY(!cache().find(u"0"_s, m_now));
        QVERIFY(cache().find(u"1"_s, m_now));
        QVERIFY(cache().find(u"2"_s, m_now));
        cache().prune(m_now.addDays(200), 1'000'000);
        QCOMPARE(files(), QStringList());
    }

    void missingFolderIsAMiss()
    {
        const DiskCache none(m_sandbox.path(u"cache-file"_s), 24h);
        m_sandbox.writeFile(u"cache-file"_s, "in the way");
        QVERIFY(!none.store(u"key"_s, entry("body")));
        QVERIFY(!none.find(u"key"_s, m_now));
    }

    void fullDiskKeepsTheOldAnswer_data() { FullDisk::addRows(); }
    void fullDiskKeepsTheOldAnswer()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        const DiskCache onDisk(disk.path(u"cache"_s), 24h);
        QVERIFY(onDisk.store(u"key"_s, entry("old")));
        const QStringList before = disk.files();
        disk.fill();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^an answer was not kept: "_s));
        QVERIFY(!onDisk.store(u"key"_s, entry("new")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^an answer was not kept: "_s));
        QVERIFY(!onDisk.store(u"another"_s, entry("new")));
        QCOMPARE(disk.files(), before);
        QVERIFY(onDisk.find(u"key"_s, m_now));
        QCOMPARE(onDisk.find(u"key"_s, m_now)->body, "old");
        disk.makeRoom();
        QVERIFY(onDisk.store(u"key"_s, entry("new")));
        QCOMPARE(onDisk.find(u"key"_s, m_now)->body, "new");
    }

private:
    DiskCache cache() const { return {m_sandbox.path(u"cache"_s), 100 * 24h}; }
    DiskCache::Entry entry(const QByteArray &body) const
    {
        return {body, "W/\"1\"", m_now, m_now.addSecs(3600)};
    }

    QStringList files() const
    {
        QStringList paths;
        const QDir folder(m_sandbox.path(u"cache"_s));
        for (const QString &name : folder.entryList(QDir::Files))
            paths += folder.filePath(name);
        return paths;
    }
    QString onlyFile() const { return files().value(0); }
    /// The one whose time was not set into the future yet.
    QString newestFile() const
    {
        const QFileInfoList all = QDir(m_sandbox.path(u"cache"_s)).entryInfoList(QDir::Files);
        for (const QFileInfo &file : all) {
            if (file.lastModified() < m_now)
                return file.fileName();
        }
        return {};
    }

    Sandbox m_sandbox;
    const QDateTime m_now{QDate(2040, 1, 2), QTime(3, 4), Qt::UTC};
};

PLOVENDIX_TEST(DiskCacheTest)
#include "DiskCacheTest.moc"
