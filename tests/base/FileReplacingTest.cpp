#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

/// Moves that take the place of an older item, with every call failing in turn.
class FileReplacingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void olderFileGives_data() { MoveFixture::addDisks(); }

    void olderFileGives()
    {
        QFETCH(Disk, disk);
        for (const bool isThere : {false, true}) {
            m_files.writeSource(isThere ? "newer" : "new");
            const auto calls = m_files.callsFor(disk);
            QVERIFY(replace(calls));
            QCOMPARE(m_files.read(m_files.destination), QByteArray(isThere ? "newer" : "new"));
            QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
            QCOMPARE(m_files.namesIn(u"here"_s), QStringList());
            QCOMPARE(calls->openDescriptors, 0);
        }
        const Result<void> missing = replace(m_files.callsFor(disk));
        QVERIFY(!missing);
        QCOMPARE(missing.error().code, ENOENT);
        QCOMPARE(m_files.read(m_files.destination), QByteArray("newer"));
    }

    void folderGoesToTheTrash_data() { MoveFixture::addDisks(); }

    void folderGoesToTheTrash()
    {
        QFETCH(Disk, disk);
        const qsizetype before = trashed().size();
        m_files.writeSource("new");
        m_files.write(m_files.destination + u"/kept.txt"_s, "precious");
        QVERIFY(replace(m_files.callsFor(disk)));
        QCOMPARE(m_files.read(m_files.destination), QByteArray("new"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
        QCOMPARE(trashed().size(), before + 1);
        QCOMPARE(trashed().constLast(), QByteArray("precious"));
    }

    void thereIsNoMomentWithNeither_data() { MoveFixture::addDisks(); }

    void thereIsNoMomentWithNeither()
    {
        QFETCH(Disk, disk);
        m_files.writeSource("new");
        const auto counting = m_files.callsFor(disk);
        QVERIFY(replace(counting));
        const qsizetype steps = counting->made.size();
        int failures = 0;
        for (int step = 1; step <= steps; ++step) {
            m_files.writeSource("new");
            m_files.write(m_files.destination, "old");
            const auto calls = m_files.callsFor(disk);
            calls->failingCall = step;
            calls->failure = EIO;
            const Result<void> result = replace(calls);
            const QByteArray there = m_files.read(m_files.destination);
            const QByteArray context = calls->made.value(step - 1).toLatin1() + ": " + there;
            QVERIFY2(there == "old" || there == "new", context.constData());
            QVERIFY2(there == (result ? "new" : "old"), context.constData());
            QVERIFY2(result || m_files.read(m_files.source) == "new", context.constData());
            QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
            QCOMPARE(calls->openDescriptors, 0);
            failures += result ? 0 : 1;
        }
        QVERIFY(failures >= 1);
    }

    /// A power failure could bring back the older file, whose successor is the source alone then.
    void sourceStaysWhileTheNewNameIsNotOnTheDisk()
    {
        m_files.writeSource("new");
        m_files.write(m_files.destination, "old");
        const auto counting = m_files.callsFor(Disk{true, true, true});
        QVERIFY(replace(counting));
        m_files.writeSource("new");
        m_files.write(m_files.destination, "old");
        const auto calls = m_files.callsFor(Disk{true, true, true});
        calls->failingCall = static_cast<int>(counting->made.lastIndexOf(u"flush"_s)) + 1;
        calls->failure = EIO;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is kept"_s));
        QVERIFY(replace(calls));
        QCOMPARE(m_files.read(m_files.destination), QByteArray("new"));
        QCOMPARE(m_files.read(m_files.source), QByteArray("new"));
    }

    void folderStaysWhileTheFileCannotTakeItsPlace_data()
    {
        QTest::addColumn<QString>("failingName");
        QTest::newRow("no trash") << u"moveToTrash"_s;
        QTest::newRow("no copy") << u"write"_s;
    }

    void folderStaysWhileTheFileCannotTakeItsPlace()
    {
        QFETCH(QString, failingName);
        m_files.writeSource("new");
        m_files.write(m_files.destination + u"/kept.txt"_s, "precious");
        const auto calls = m_files.callsFor(Disk{true, true, true});
        calls->failingName = failingName;
        calls->failure = ENOSPC;
        const Result<void> result = replace(calls);
        QVERIFY(!result);
        QCOMPARE(result.error().code, ENOSPC);
        QCOMPARE(calls->made.contains(u"moveToTrash"_s), failingName == u"moveToTrash");
        QCOMPARE(m_files.read(m_files.destination + u"/kept.txt"_s), QByteArray("precious"));
        QCOMPARE(m_files.read(m_files.source), QByteArray("new"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    }

    void sourceOnItsOwnPlaceStays()
    {
        m_files.writeSource("new");
        m_files.destination = m_files.source;
        QVERIFY(replace(m_files.callsFor(Disk{})));
        QCOMPARE(m_files.read(m_files.source), QByteArray("new"));
    }

private:
    Result<void> replace(const std::shared_ptr<FaultyCalls> &calls) const
    {
        return FileManager(calls).moveItemReplacing(QUrl::fromLocalFile(m_files.source),
                                                    QUrl::fromLocalFile(m_files.destination));
    }
    /// The content of every "kept.txt" in the trash of the test's own home.
    QList<QByteArray> trashed() const
    {
        const QString trash = qEnvironmentVariable("XDG_DATA_HOME") + u"/Trash/files"_s;
        QList<QByteArray> contents;
        for (const QString &name : QDir(trash).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            contents += m_files.read(trash + u'/' + name + u"/kept.txt"_s);
        return contents;
    }

    MoveFixture m_files;
};

PLOVENDIX_TEST(FileReplacingTest)
#include "FileReplacingTest.moc"
