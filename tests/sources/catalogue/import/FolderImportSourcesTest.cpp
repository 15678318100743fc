#include "FolderJobFixture.h"

#include <tests/support/TestMain.h>

#include <QDir>

using namespace Qt::StringLiterals;
using Phase = FolderImportState::Phase;

/// What an import meets in its folder: files and folders that are gone, closed, or no subtitles.
class FolderImportSourcesTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<FolderJobFixture> m_fixture;

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<FolderJobFixture>(m_sandbox); }

    void folderThatIsGoneIsNamed()
    {
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The folder “%1” is no longer there. What was added before is in the catalogue."_s.arg(
                     m_fixture->folder()));
    }

    void folderThatMayNotBeReadIsNotTakenForAnEmptyOne()
    {
        m_fixture->writeEpisodes(1);
        const FolderImportState state = m_fixture->runWithout(m_fixture->folder(), 0700);
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure, u"You are not allowed to read the folder “%1”."_s.arg(m_fixture->folder()));
    }

    void fileThatMayNotBeReadIsReadOnceItMay_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("subtitle") << u"Night.Ferry.2020.en.srt"_s;
        QTest::newRow("archive") << u"Night.Ferry.2020.zip"_s;
    }
    void fileThatMayNotBeReadIsReadOnceItMay()
    {
        QFETCH(const QString, name);
        const QByteArray subtitle = ImportFixture::cue(u"a"_s);
        const QString path =
            name.endsWith(".zip"_L1)
                ? m_fixture->import().writeArchive(name, {{u"Night.Ferry.2020.en.srt"_s, subtitle}})
                : m_fixture->import().write(name, subtitle);
        const FolderImportState state = m_fixture->runWithout(path, 0644);
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.refused, 1);
        QCOMPARE(state.firstRefusal, u"“%1” cannot be opened."_s.arg(name));
        QCOMPARE(m_fixture->run().added, 1);
    }

    void folderBelowThatMayNotBeReadIsCountedAndReadOnceItMay()
    {
        m_fixture->import().write(u"open/Paper.Boat.2018.de.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->import().write(u"closed/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        const FolderImportState state = m_fixture->runWithout(m_fixture->folder() + u"/closed"_s, 0755);
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 2);
        QCOMPARE(state.files, 2);
        QCOMPARE(state.added, 1);
        QCOMPARE(state.refused, 1);
        QCOMPARE(state.firstRefusal, u"“closed” cannot be opened."_s);
        QCOMPARE(m_fixture->run().added, 1);
    }

    void folderWithNothingButOneThatMayNotBeReadIsNotWithoutFiles()
    {
        m_fixture->import().write(u"closed/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        const FolderImportState state = m_fixture->runWithout(m_fixture->folder() + u"/closed"_s, 0755);
        QCOMPARE(state.total, 1);
        QCOMPARE(state.refused, 1);
    }

    void folderThatVanishesIsSaidAndTakesNothingWithIt()
    {
        m_fixture->writeEpisodes(6);
        QCOMPARE(m_fixture->run().added, 6);
        const FolderImportState state = m_fixture->runUntil(
            2, [this](FolderImportJob &) { QVERIFY(QDir(m_fixture->folder()).removeRecursively()); });
        QCOMPARE(state.phase, Phase::Failed);
        QVERIFY(state.failure.startsWith(u"The folder “%1” is no longer there."_s.arg(m_fixture->folder())));
        QCOMPARE(state.known, 2);
        QCOMPARE(m_fixture->import().search(u"harbour lights"_s).size(), 6);
        QVERIFY(state.firstRefusal.endsWith(u"” is no longer there."_s));
        QVERIFY(m_fixture->import().faults().isEmpty());
    }

    void placeOfAMissingDiskIsSaidAndTakesNothingWithIt()
    {
        m_fixture->writeEpisodes(6);
        QCOMPARE(m_fixture->run().added, 6);
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        QVERIFY(QDir().mkpath(m_fixture->folder()));
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"There are no subtitle files in the folder “%1” any more. What was added before"
                 " is in the catalogue."_s.arg(m_fixture->folder()));
        QCOMPARE(m_fixture->import().search(u"harbour lights"_s).size(), 6);
        QVERIFY(m_fixture->import().faults().isEmpty());
    }

    void folderThatNeverHadAnyIsNoFailure()
    {
        m_fixture->writeEpisodes(6);
        QCOMPARE(m_fixture->run().added, 6);
        m_fixture->import().write(u"../other/notes.md"_s, "nothing");
        FolderImportJob job(m_fixture->path(), m_fixture->folder() + u"/../other"_s,
                            FolderJobFixture::WaitLimit);
        const FolderImportState state = job.run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 0);
        QCOMPARE(state.refused, 0);
    }

    void firstRefusalIsASentence_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("page") << u"deep/page.srt"_s << QByteArray("<!doctype html><html></html>")
                              << u"“deep/page.srt” is no subtitle."_s;
        QTest::newRow("large") << u"large.srt"_s << QByteArray(9 * 1024 * 1024, 'x')
                               << u"“large.srt” is too large for a subtitle."_s;
        QTest::newRow("packed") << u"packed.srt"_s << QByteArray("7z\xbc\xaf\x27\x1c and no more of it")
                                << u"“packed.srt” cannot be unpacked."_s;
        QTest::newRow("archive") << u"more.zip"_s << QByteArray("no archive")
                                 << u"“more.zip” is damaged or of an unknown kind."_s;
        QTest::newRow("long name") << QString(100, u'a') + QString(100, u'b') + u".srt"_s << QByteArray("no")
                                   << u"“%1…%2.srt” is no subtitle."_s.arg(QString(30, u'a'),
                                                                           QString(26, u'b'));
        QTest::newRow("lines") << u"two\nlines.srt"_s << QByteArray("no")
                               << u"“two lines.srt” is no subtitle."_s;
    }
    void firstRefusalIsASentence()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        m_fixture->import().write(name, content);
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.refused, 1);
        QTEST(state.firstRefusal, "sentence");
    }

    void lockedArchiveIsSaid()
    {
        m_fixture->import().writeArchive(u"locked.zip"_s,
                                         {{u"Night.Ferry.2020.srt"_s, ImportFixture::cue(u"a"_s)}}, "secret");
        QCOMPARE(m_fixture->run().firstRefusal, u"“locked.zip” is protected by a password."_s);
    }
};

PLOVENDIX_TEST(FolderImportSourcesTest)
#include "FolderImportSourcesTest.moc"
