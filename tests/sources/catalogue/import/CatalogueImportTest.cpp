#include "ImportFixture.h"
#include "UnprivilegedUser.h"

#include <media/MovieHash.h>

#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <tests/support/TestMain.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Entering files and folders, again and again.
class CatalogueImportTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    static void remove(const QString &catalogue, const QString &path, qint64 expected)
    {
        Result<OwnCatalogue> own = OwnCatalogue::open(catalogue);
        QVERIFY(own);
        QCOMPARE(own.value().removeBelow(path, 1000), expected);
    }

    /// Adds it as somebody who may not look into the closed folder, but may do everything else.
    ImportCounts addUnprivileged(const QString &path, const QString &closed) const
    {
        const auto allow = [](const QString &folder, mode_t rights) {
            if (::chmod(QFile::encodeName(folder).constData(), rights) != 0)
                qFatal("the rights of %s cannot be changed", qUtf8Printable(folder));
        };
        allow(m_sandbox.path({}), 0777);
        allow(QFileInfo(m_fixture->path()).path(), 0777);
        allow(closed, 0);
        ImportCounts counts;
        {
            const UnprivilegedUser user;
            counts = m_fixture->add(path);
        }
        allow(closed, 0755);
        return counts;
    }

private Q_SLOTS:
    void init()
    {
        m_fixture =
            std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentTestFunction()));
    }

    void folderIsFoundByTitleWithItsContent()
    {
        const QByteArray content = ImportFixture::cue(u"Grüße"_s);
        m_fixture->write(u"Crème.Brûlée.2019.1080p.BluRay-ABC.de.srt"_s, content);
        m_fixture->write(u"deep/er/Harbour.Lights.S01E02.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"deep/notes.md"_s, "nothing");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 2);
        QCOMPARE(counts.refused, 0);
        const QStringList expected{u"Crème.Brûlée.2019.1080p.BluRay-ABC|ger"_s};
        for (const QString &text : {u"creme brulee"_s, u"brulee creme"_s, u"crem"_s, u"creme brulee 2019"_s,
                                    u"Creme.Brulee.2019.720p.WEB"_s, u"the creme brulee story"_s})
            QCOMPARE(m_fixture->search(text), expected);
        QCOMPARE(m_fixture->search(u"creme brulee"_s, u"eng"_s), QStringList());
        QCOMPARE(m_fixture->contentOf(m_fixture->entries(u"creme"_s).first().id), content);
        const Subtitle episode = m_fixture->entries(u"harbour lights s01e02"_s).value(0).subtitle;
        QCOMPARE(episode.season, 1);
        QCOMPARE(episode.episode, 2);
    }

    void sameFolderAgainChangesNothing()
    {
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        QCOMPARE(m_fixture->add().added, 1);
        const ImportCounts again = m_fixture->add();
        QCOMPARE(again.added, 0);
        QCOMPARE(again.known, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
    }

    void changedFileReplacesWhatItLeft()
    {
        const QString path = m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->add();
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"longer than before"_s));
        QCOMPARE(m_fixture->add().added, 1);
        const QList<CatalogueEntry> entries = m_fixture->entries(u"harbour"_s);
        QCOMPARE(entries.size(), 1);
        QCOMPARE(m_fixture->contentOf(entries.first().id), ImportFixture::cue(u"longer than before"_s));
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void sameSubtitleInTwoPlacesIsOneUntilBothAreGone()
    {
        m_fixture->write(u"a/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"b/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        remove(m_fixture->path(), m_fixture->folder() + u"/a"_s, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        remove(m_fixture->path(), m_fixture->folder() + u"/b"_s, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList());
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void removalTakesOnlyWhatLiesBelow()
    {
        m_fixture->write(u"a/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"a-b/Harbour.Nights.2019.en.srt"_s, ImportFixture::cue(u"b"_s));
        m_fixture->write(u"a0/Harbour.Days.2019.en.srt"_s, ImportFixture::cue(u"c"_s));
        m_fixture->add();
        remove(m_fixture->path(), m_fixture->folder() + u"/a"_s, 1);
        QStringList left = m_fixture->search(u"harbour"_s);
        left.sort();
        QCOMPARE(left, QStringList({u"Harbour.Days.2019|eng"_s, u"Harbour.Nights.2019|eng"_s}));
        // What was taken out can come again, and its title's words are found again.
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"lights"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }

    void removedTitleLeavesNoWordsToTheNext()
    {
        m_fixture->write(u"a/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->add();
        remove(m_fixture->path(), m_fixture->folder() + u"/a"_s, 1);
        m_fixture->write(u"b/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        m_fixture->add(m_fixture->folder() + u"/b"_s);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList());
        QCOMPARE(m_fixture->search(u"lights"_s), QStringList());
        QCOMPARE(m_fixture->search(u"ferry"_s), QStringList(u"Night.Ferry.2020|eng"_s));
    }

    void videoBesideIsFoundByItsHash()
    {
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->add();
        const QString video = m_fixture->write(u"Harbour.Lights.2019.mkv"_s, QByteArray(200'000, 'v'));
        const auto hash = movieHash(QUrl::fromLocalFile(video));
        QVERIFY(hash);
        const auto matching = [&] {
            const Result<CatalogueDatabase> database =
                CatalogueDatabase::open(m_fixture->path(), CatalogueErrors());
            return database->entriesForVideo(hash->size, hash->hash, {})->size();
        };
        QCOMPARE(matching(), 0);
        m_fixture->add(); // the subtitle has not changed, but now it has a video
        QCOMPARE(matching(), 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
    }

    void languageOptionIsForFilesThatNameNone()
    {
        m_fixture->write(u"Harbour.Lights.2019.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"Harbour.Nights.2019.fr.srt"_s, ImportFixture::cue(u"b"_s));
        QCOMPARE(m_fixture->add().unlabelled, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s), QStringList(u"Harbour.Lights.2019|und"_s));
        QCOMPARE(m_fixture->add({}, u"ger"_s).unlabelled, 0);
        QCOMPARE(m_fixture->search(u"harbour lights"_s), QStringList(u"Harbour.Lights.2019|ger"_s));
        QCOMPARE(m_fixture->search(u"harbour nights"_s), QStringList(u"Harbour.Nights.2019|fre"_s));
    }

    void nonSubtitlesAreRefusedAndNamed()
    {
        m_fixture->write(u"page.srt"_s, "<!doctype html><html><body>Not found</body></html>");
        m_fixture->write(u"large.srt"_s, QByteArray(9 * 1024 * 1024, 'x'));
        m_fixture->write(u"empty.srt"_s, {});
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 0);
        QCOMPARE(counts.refused, 3);
        QCOMPARE(counts.problems.size(), 3);
        QVERIFY(counts.problems.join(u' ').contains(m_fixture->folder() + u"/page.srt is no subtitle"_s));
        QCOMPARE(m_fixture->add().refused, 0); // known not to be any
        QCOMPARE(m_fixture->add(m_fixture->folder() + u"/gone.srt"_s).refused, 1);
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
        m_fixture = std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentDataTag()));
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->add();
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        if (placeIsLeft)
            QVERIFY(QDir().mkpath(m_fixture->folder()));
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.refused, 1);
        QCOMPARE(counts.problems, QStringList(m_fixture->folder() + problem));
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }

    void fileThatIsNotFoundAnyMoreStaysBesideOthers()
    {
        const QString path = m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        m_fixture->add();
        QVERIFY(QFile::remove(path));
        QCOMPARE(m_fixture->add().refused, 0);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }

    void closedFolderIsRefusedAndNamed()
    {
        m_fixture->write(u"closed/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        const QString closed = m_fixture->folder() + u"/closed"_s;
        const QStringList problems{closed + u" is a folder that cannot be read"_s};
        for (const ImportCounts &counts : {addUnprivileged({}, closed), addUnprivileged(closed, closed)}) {
            QCOMPARE(counts.refused, 1);
            QCOMPARE(counts.problems, problems);
        }
    }

    void linkToAClosedFolderIsNoProblem()
    {
        m_fixture->write(u"../closed/Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        const QString closed = QFileInfo(m_fixture->path()).path() + u"/closed"_s;
        QVERIFY(QFile::link(closed, m_fixture->folder() + u"/link"_s));
        const ImportCounts counts = addUnprivileged({}, closed);
        QCOMPARE(counts.added, 1);
        QCOMPARE(counts.refused, 0);
    }

    void fileThatCannotBeReadToItsEndStaysAsItWas_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("subtitle") << u"Night.Ferry.2020.en.srt"_s;
        QTest::newRow("archive") << u"Night.Ferry.2020.zip"_s;
    }
    void fileThatCannotBeReadToItsEndStaysAsItWas()
    {
        QFETCH(const QString, name);
        m_fixture = std::make_unique<ImportFixture>(m_sandbox, name);
        const QByteArray subtitle = ImportFixture::cue(u"a"_s);
        const QString path = name.endsWith(".zip"_L1)
                                 ? m_fixture->writeArchive(name, {{u"Night.Ferry.2020.en.srt"_s, subtitle}})
                                 : m_fixture->write(name, subtitle);
        QCOMPARE(m_fixture->add().added, 1);
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
        for (int i = 0; i < 20; ++i)
            m_fixture->write(u"Harbour.Lights.S01E%1.en.srt"_s.arg(i + 1, 2, 10, QLatin1Char('0')),
                             ImportFixture::cue(QString::number(i)));
        {
            Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
            QVERIFY(catalogue);
            CatalogueImport import(catalogue.value(), {},
                                   [](const ImportCounts &counts) { return counts.files < 8; });
            const Result<CatalogueImport::End> end = import.add(m_fixture->folder());
            QVERIFY(end && *end == CatalogueImport::End::Stopped);
        }
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 8);
        const ImportCounts rest = m_fixture->add();
        QCOMPARE(rest.known, 8);
        QCOMPARE(rest.added, 12);
    }
};

PLOVENDIX_TEST(CatalogueImportTest)
#include "CatalogueImportTest.moc"
