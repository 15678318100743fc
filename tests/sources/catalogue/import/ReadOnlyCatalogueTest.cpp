#include "ImportFixture.h"

#include <sources/catalogue/import/CatalogueReports.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Catalogues that were finished and then put where nothing may be written, on a shared disk perhaps.
class ReadOnlyCatalogueTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;
    QString m_place; // a folder without the right to write, once the catalogue is there

    static void setMode(const QString &path, mode_t mode)
    {
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    /// Copies the catalogue as it is now, and its log if there is one, and closes the folder.
    QString putAway(const QString &name = u"catalogue.sqlite"_s) const
    {
        const QString path = m_place + u'/' + name;
        for (const QString &part : {QString(), u"-wal"_s}) {
            if (QFile::copy(m_fixture->path() + part, path + part))
                setMode(path + part, 0444);
        }
        setMode(m_place, 0555);
        return path;
    }

    static Result<QList<CatalogueEntry>> searchUnprivileged(const QString &path)
    {
        const UnprivilegedUser user;
        const Result<CatalogueDatabase> database = CatalogueDatabase::open(path, CatalogueErrors());
        if (!database)
            return database.error();
        return database->entriesForText(u"harbour lights"_s, u"eng"_s);
    }
    static void expectUnreadable(const Result<QList<CatalogueEntry>> &entries)
    {
        QVERIFY(!entries);
        QCOMPARE(entries.error().code, static_cast<int>(CatalogueFailure::Unreadable));
    }

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<ImportFixture>(m_sandbox);
        m_fixture->writeEpisodes(1);
        QCOMPARE(m_fixture->add().added, 1);
        m_place = m_fixture->folder() + u"/place"_s;
        QVERIFY(QDir().mkpath(m_place));
        for (const QString &folder :
             {m_sandbox.path({}), QFileInfo(m_fixture->path()).path(), m_fixture->folder()})
            setMode(folder, 0755);
    }
    void cleanup() { setMode(m_place, 0755); }

    void itIsRead_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"catalogue.sqlite", "a b.sqlite", "50%25?mode=rwc#x.sqlite", "Katalog für alle"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void itIsRead()
    {
        QFETCH(const QString, name);
        const QString path = putAway(name);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_fixture->folder()));
        for (const QString &way : {path, QDir().relativeFilePath(path)}) {
            const Result<QList<CatalogueEntry>> entries = searchUnprivileged(way);
            QVERIFY2(entries, entries ? "" : qPrintable(entries.error().detail));
            QCOMPARE(entries->size(), 1);
            const UnprivilegedUser user;
            const Result<QList<QStringList>> figures = CatalogueReports::figures(way);
            QVERIFY(figures && figures->contains(QStringList{u"subtitles"_s, u"1"_s}));
        }
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(QDir(m_place).entryList(QDir::Files), QStringList(name)); // nothing came beside it
    }

    void whatIsStillInItsLogIsNotLeftOut()
    {
        Result<OwnCatalogue> writer = OwnCatalogue::open(m_fixture->path());
        QVERIFY(writer); // keeps the log from being written back
        ReadSubtitle subtitle;
        subtitle.film.titles = {u"Harbour Lights"_s};
        subtitle.record.content = StoredContent::packed("b");
        writer.value().enter({{u"/elsewhere.srt"_s, u"1"_s, {subtitle}, true}});
        const QString path = putAway();
        QVERIFY(QFile::exists(path + u"-wal"_s));
        expectUnreadable(searchUnprivileged(path));
    }

    void fileThatMayNotBeReadIsSaidToBeUnreadable()
    {
        const QString path = putAway();
        setMode(path, 0);
        expectUnreadable(searchUnprivileged(path));
    }
};

PLOVENDIX_TEST(ReadOnlyCatalogueTest)
#include "ReadOnlyCatalogueTest.moc"
