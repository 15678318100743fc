#include "ImportFixture.h"

#include <media/MovieHash.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QUrl>

using namespace Qt::StringLiterals;

/// Entering files and folders and taking them out, again and again.
class CatalogueImportTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    QString write(const QString &relative, const QString &line = u"a"_s) const
    {
        return m_fixture->write(relative, ImportFixture::cue(line));
    }
    ImportCounts addWithout(const QString &closed, const QString &path = {}) const
    {
        ImportCounts counts;
        m_fixture->withoutRights(closed, [&] { counts = m_fixture->add(path); });
        return counts;
    }
    QString below(const QString &name) const { return m_fixture->folder() + u'/' + name; }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<ImportFixture>(m_sandbox); }
    void cleanup()
    {
        if (QFile::exists(m_fixture->path()))
            QCOMPARE(m_fixture->faults(), QStringList());
    }

    void folderIsFoundByTitleWithItsContent()
    {
        write(u"Crème.Brûlée.2019.1080p.BluRay-ABC.de.srt"_s, u"Grüße"_s);
        write(u"deep/er/Harbour.Lights.S01E02.en.srt"_s);
        m_fixture->write(u"deep/notes.md"_s, "nothing");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 2);
        QCOMPARE(counts.refused, 0);
        for (const QString &text : {u"creme brulee"_s, u"crem"_s, u"Creme.Brulee.2019.720p.WEB"_s})
            QCOMPARE(m_fixture->search(text), QStringList(u"Crème.Brûlée.2019.1080p.BluRay-ABC|ger"_s));
        QCOMPARE(m_fixture->contentOf(m_fixture->entries(u"creme"_s).first().id),
                 ImportFixture::cue(u"Grüße"_s));
        const Subtitle episode = m_fixture->entries(u"harbour lights s01e02"_s).value(0).subtitle;
        QCOMPARE(episode.season, 1);
        QCOMPARE(episode.episode, 2);
        const ImportCounts again = m_fixture->add();
        QCOMPARE(again.added, 0);
        QCOMPARE(again.known, 2);
    }

    void changedFileReplacesWhatItLeft()
    {
        write(u"Harbour.Lights.2019.en.srt"_s);
        m_fixture->add();
        write(u"Harbour.Lights.2019.en.srt"_s, u"longer than before"_s);
        QCOMPARE(m_fixture->add().added, 1);
        const QList<CatalogueEntry> entries = m_fixture->entries(u"harbour"_s);
        QCOMPARE(entries.size(), 1);
        QCOMPARE(m_fixture->contentOf(entries.first().id), ImportFixture::cue(u"longer than before"_s));
    }

    void sameSubtitleInTwoPlacesIsOneUntilBothAreGone()
    {
        write(u"a/Harbour.Lights.2019.en.srt"_s);
        write(u"b/Harbour.Lights.2019.en.srt"_s);
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        QCOMPARE(m_fixture->remove(below(u"a"_s)), 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        QCOMPARE(m_fixture->remove(below(u"b"_s)), 1);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList());
    }

    void removalTakesOnlyWhatLiesBelow()
    {
        write(u"a/Harbour.Lights.2019.en.srt"_s);
        write(u"a-b/Harbour.Nights.2019.en.srt"_s, u"b"_s);
        write(u"a0/Harbour.Days.2019.en.srt"_s, u"c"_s);
        m_fixture->add();
        QCOMPARE(m_fixture->remove(below(u"a"_s)), 1);
        QStringList left = m_fixture->search(u"harbour"_s);
        left.sort();
        QCOMPARE(left, QStringList({u"Harbour.Days.2019|eng"_s, u"Harbour.Nights.2019|eng"_s}));
        QCOMPARE(m_fixture->search(u"lights"_s), QStringList());
        // What was taken out can come again, and its title's words are found again.
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"lights"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }

    void removedTitleLeavesNoWordsToTheNext()
    {
        write(u"a/Harbour.Lights.2019.en.srt"_s);
        m_fixture->add();
        m_fixture->remove(below(u"a"_s));
        write(u"b/Night.Ferry.2020.en.srt"_s, u"b"_s);
        m_fixture->add(below(u"b"_s));
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList());
        QCOMPARE(m_fixture->search(u"ferry"_s), QStringList(u"Night.Ferry.2020|eng"_s));
    }

    void videoBesideIsFoundByItsHash()
    {
        write(u"Harbour.Lights.2019.en.srt"_s);
        write(u"Night.Ferry.2020/Subs/2_English.srt"_s, u"b"_s);
        m_fixture->add();
        for (const QString &name : {u"Harbour.Lights.2019.mkv"_s, u"Night.Ferry.2020/film.mp4"_s}) {
            const QString video = m_fixture->write(name, QByteArray(200'000, 'v') + name.toUtf8());
            const auto hash = movieHash(QUrl::fromLocalFile(video));
            QVERIFY(hash);
            QCOMPARE(m_fixture->add().added, 1); // the subtitle has not changed, but now it has a video
            const auto database = CatalogueDatabase::open(m_fixture->path(), CatalogueErrors());
            QCOMPARE(database->entriesForVideo(hash->size, hash->hash, {})->size(), 1);
        }
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
    }

    void languageOptionIsForFilesThatNameNone()
    {
        write(u"Harbour.Lights.2019.srt"_s);
        write(u"Harbour.Nights.2019.fr.srt"_s, u"b"_s);
        QCOMPARE(m_fixture->add().unlabelled, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s), QStringList(u"Harbour.Lights.2019|und"_s));
        QCOMPARE(m_fixture->add({}, u"ger"_s).unlabelled, 0);
        QCOMPARE(m_fixture->search(u"harbour lights"_s), QStringList(u"Harbour.Lights.2019|ger"_s));
        QCOMPARE(m_fixture->search(u"harbour nights"_s), QStringList(u"Harbour.Nights.2019|fre"_s));
    }

    void nonSubtitlesAreRefusedAndNamed()
    {
        const QString page = m_fixture->write(u"page.srt"_s, "<!doctype html><html><body/></html>");
        const QString packed = m_fixture->write(u"packed.srt"_s, "7z\xbc\xaf\x27\x1c and no more of it");
        const QString large = m_fixture->write(u"large.srt"_s, QByteArray(9 * 1024 * 1024, 'x'));
        const QString notes = m_fixture->write(u"notes.md"_s, "nothing");
        ImportCounts counts = m_fixture->add();
        counts.problems.sort();
        QCOMPARE(counts.added, 0);
        QCOMPARE(counts.refused, 3);
        QCOMPARE(counts.problems,
                 QStringList({large + u" is too large for a subtitle"_s, packed + u" cannot be unpacked"_s,
                              page + u" is no subtitle"_s}));
        QCOMPARE(m_fixture->add().refused, 0); // known not to be any
        QCOMPARE(m_fixture->add(notes).problems,
                 QStringList(notes + u" is neither a subtitle nor an archive"_s));
        QCOMPARE(m_fixture->add(below(u"gone.srt"_s)).problems,
                 QStringList(below(u"gone.srt is not there"_s)));
    }

    void onlyTheFirstProblemsAreKept()
    {
        for (int i = 0; i < 25; ++i)
            m_fixture->write(u"%1.srt"_s.arg(i), "no");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.refused, 25);
        QCOMPARE(counts.problems.size(), 20);
    }

    void unfoundFilesStay_data()
    {
        QTest::addColumn<bool>("placeIsLeft");
        QTest::addColumn<QString>("problem");
        QTest::newRow("empty folder")
            << true << u" holds no subtitle files any more; what came from it stays in the catalogue"_s;
        QTest::newRow("no folder") << false << u" is not there; what came from it stays in the catalogue"_s;
    }
    void unfoundFilesStay()
    {
        QFETCH(const bool, placeIsLeft);
        QFETCH(const QString, problem);
        write(u"Harbour.Lights.2019.en.srt"_s);
        const QString path = write(u"Night.Ferry.2020.en.srt"_s, u"b"_s);
        m_fixture->add();
        QVERIFY(QFile::remove(path));
        QCOMPARE(m_fixture->add().refused, 0); // there are others beside it
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        if (placeIsLeft)
            QVERIFY(QDir().mkpath(m_fixture->folder()));
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.refused, 1);
        QCOMPARE(counts.problems, QStringList(m_fixture->folder() + problem));
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
        QCOMPARE(m_fixture->search(u"ferry"_s), QStringList(u"Night.Ferry.2020|eng"_s));
    }

    void closedFolderIsRefusedAndNamed()
    {
        write(u"closed/Harbour.Lights.2019.en.srt"_s);
        const QString closed = below(u"closed"_s);
        for (const ImportCounts &counts : {addWithout(closed), addWithout(closed, closed)}) {
            QCOMPARE(counts.files, 1);
            QCOMPARE(counts.problems, QStringList(closed + u" is a folder that cannot be read"_s));
        }
        QCOMPARE(m_fixture->add().added, 1);
    }

    void linkToAClosedFolderIsNoProblem()
    {
        write(u"../closed/Harbour.Lights.2019.en.srt"_s);
        write(u"Night.Ferry.2020.en.srt"_s, u"b"_s);
        const QString closed = QFileInfo(m_fixture->path()).path() + u"/closed"_s;
        QVERIFY(QFile::link(closed, below(u"link"_s)));
        const ImportCounts counts = addWithout(closed);
        QCOMPARE(counts.added, 1);
        QCOMPARE(counts.refused, 0);
    }

    void fileThatCannotBeReadStaysAsItWas_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("subtitle") << u"Night.Ferry.2020.en.srt"_s;
        QTest::newRow("archive") << u"Night.Ferry.2020.zip"_s;
    }
    void fileThatCannotBeReadStaysAsItWas()
    {
        QFETCH(const QString, name);
        const QByteArray subtitle = ImportFixture::cue(u"a"_s);
        const QString path = name.endsWith(".zip"_L1)
                                 ? m_fixture->writeArchive(name, {{u"Night.Ferry.2020.en.srt"_s, subtitle}})
                                 : m_fixture->write(name, subtitle);
        QVERIFY(addWithout(path).firstRefused->why == ImportRefusal::Unreadable);
        QCOMPARE(m_fixture->add().added, 1); // once it may be read
        // Opens like any other file, and fails to be read as one on a broken disk does.
        QVERIFY(QFile::remove(path) && QFile::link(u"/proc/self/mem"_s, path));
        for (int i = 0; i < 2; ++i) {
            const ImportCounts counts = m_fixture->add();
            QCOMPARE(counts.refused, 1);
            QVERIFY(counts.firstRefused->why == ImportRefusal::Unreadable);
            QCOMPARE(m_fixture->search(u"night ferry"_s), QStringList(u"Night.Ferry.2020|eng"_s));
        }
    }

    void stoppedImportGoesOnWhereItWas()
    {
        m_fixture->writeEpisodes(20);
        QVERIFY(m_fixture->addUntil([](const ImportCounts &counts) { return counts.files < 8; }));
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 8);
        const ImportCounts rest = m_fixture->add();
        QCOMPARE(rest.known, 8);
        QCOMPARE(rest.added, 12);
    }
};

PLOVENDIX_TEST(CatalogueImportTest)
#include "CatalogueImportTest.moc"
