#include "ImportFixture.h"
#include "UnprivilegedUser.h"

#include <sources/catalogue/import/CatalogueReports.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <tests/support/TestMain.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Catalogues that were finished and then put where nothing may be written, on a shared disk perhaps.
class ReadOnlyCatalogueTest final : public QObject
{
    Q_OBJECT

    static constexpr mode_t Closed = 0555;
    static constexpr mode_t Open = 0755;
    static constexpr mode_t ReadOnlyFile = 0444;

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;
    QString m_place; // a folder that nobody may write to once it is closed

    static void setMode(const QString &path, mode_t mode)
    {
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    void letEverybodyIn() const
    {
        for (const QString &folder :
             {m_sandbox.path({}), QFileInfo(m_fixture->path()).path(), m_fixture->folder()})
            setMode(folder, Open);
    }

    /// Copies the catalogue as it is now, with its log if `log`, and closes the folder.
    QString putAway(const QString &name, bool log = false) const
    {
        const QString path = m_place + u'/' + name;
        if (!QFile::copy(m_fixture->path(), path))
            qFatal("the catalogue cannot be copied");
        if (log && !QFile::copy(m_fixture->path() + u"-wal"_s, path + u"-wal"_s))
            qFatal("there is no log to copy");
        for (const QFileInfo &file : QDir(m_place).entryInfoList(QDir::Files))
            setMode(file.filePath(), ReadOnlyFile);
        setMode(m_place, Closed);
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

private Q_SLOTS:
    void init()
    {
        static int number = 0;
        m_fixture = std::make_unique<ImportFixture>(m_sandbox, u"catalogue-%1"_s.arg(++number));
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
        QCOMPARE(m_fixture->add().added, 1);
        m_place = m_fixture->folder() + u"/place"_s;
        QVERIFY(QDir().mkpath(m_place));
        letEverybodyIn();
    }

    void cleanup() { setMode(m_place, Open); }

    void itIsSearched_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"catalogue.sqlite", "a b.sqlite", "50%25?mode=rwc#x.sqlite", "Katalog für alle"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }

    void itIsSearched()
    {
        QFETCH(const QString, name);
        const QString path = putAway(name);
        const Result<QList<CatalogueEntry>> entries = searchUnprivileged(path);
        QVERIFY2(entries, entries ? "" : qPrintable(entries.error().detail));
        QCOMPARE(entries->size(), 1);
        QCOMPARE(entries->first().subtitle.subFileName, u"Harbour.Lights.2019"_s);
        QCOMPARE(QDir(m_place).entryList(QDir::Files), QStringList(name)); // nothing came beside it
    }

    void itIsSearchedByARelativeName()
    {
        const QString path = putAway(u"catalogue.sqlite"_s);
        const QString before = QDir::currentPath(); // a folder that nobody else may enter, perhaps
        QVERIFY(QDir::setCurrent(m_fixture->folder()));
        const Result<QList<CatalogueEntry>> entries = searchUnprivileged(QDir().relativeFilePath(path));
        QVERIFY(QDir::setCurrent(before));
        QVERIFY2(entries, entries ? "" : qPrintable(entries.error().detail));
        QCOMPARE(entries->size(), 1);
    }

    void theCommandReadsItToo()
    {
        const QString path = putAway(u"catalogue.sqlite"_s);
        const UnprivilegedUser user;
        const Result<QList<QStringList>> figures = CatalogueReports::figures(path);
        QVERIFY(figures);
        QVERIFY(figures->contains(QStringList{u"subtitles"_s, u"1"_s}));
    }

    void whatIsStillInItsLogIsNotLeftOut()
    {
        const Result<OwnCatalogue> writer = OwnCatalogue::open(m_fixture->path());
        QVERIFY(writer); // keeps the log from being written back
        enterWithoutSettling();
        const QString path = putAway(u"catalogue.sqlite"_s, true);
        const Result<QList<CatalogueEntry>> entries = searchUnprivileged(path);
        QVERIFY(!entries);
        QCOMPARE(entries.error().code, static_cast<int>(CatalogueFailure::Unreadable));
        QVERIFY(entries.error().localizedDescription.contains(u"cannot be read"_s));
    }

    void fileThatMayNotBeReadIsSaidToBeUnreadable()
    {
        const QString path = putAway(u"catalogue.sqlite"_s);
        setMode(path, 0);
        const Result<QList<CatalogueEntry>> entries = searchUnprivileged(path);
        QVERIFY(!entries);
        QCOMPARE(entries.error().code, static_cast<int>(CatalogueFailure::Unreadable));
    }

private:
    void enterWithoutSettling() const
    {
        Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
        QVERIFY(catalogue);
        ReadSubtitle subtitle;
        subtitle.film.titles = {u"Harbour Lights"_s};
        subtitle.record.release = u"Harbour.Lights.1954"_s;
        subtitle.record.language = u"eng"_s;
        subtitle.record.format = u"srt"_s;
        subtitle.record.content = StoredContent::packed("b");
        catalogue.value().enter({{u"/elsewhere.srt"_s, u"1"_s, {subtitle}, true}});
    }
};

PLOVENDIX_TEST(ReadOnlyCatalogueTest)
#include "ReadOnlyCatalogueTest.moc"
