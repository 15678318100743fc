#include "ImportFixture.h"

#include <sources/catalogue/CatalogueSchema.h>
#include <sources/catalogue/import/CatalogueStore.h>
#include <tests/support/TestMain.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The file itself: how it is made and brought up to date, and who may use it at once.
class CatalogueStoreTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    std::string name(const QString &suffix = {}) const
    {
        return QFile::encodeName(m_fixture->path() + suffix).toStdString();
    }

    /// A catalogue as the first version of the program had them, with one subtitle.
    void makeFirstVersion() const
    {
        SQLite::Database database(name(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec(CatalogueSchema::Statements);
        database.exec("INSERT INTO film(id, year) VALUES(1, 2001);"
                      "INSERT INTO title(id, name) VALUES(1, 'Old Pier');"
                      "INSERT INTO film_title VALUES(1, 1, 1);"
                      "INSERT INTO title_words(rowid, words) VALUES(1, 'old pier');"
                      "INSERT INTO subtitle(id, film_id, language, release, format, digest, content)"
                      " VALUES(1, 1, 'eng', 'Old.Pier.2001', 'srt', x'01', x'414243')");
        database.exec("PRAGMA application_id = " + std::to_string(CatalogueSchema::ApplicationId));
        database.exec("PRAGMA user_version = 1");
    }

private Q_SLOTS:
    void init()
    {
        m_fixture =
            std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentTestFunction()));
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
    }

    void newFileIsSoundAndSafeAgainstPowerLoss()
    {
        m_fixture->add();
        const auto database = CatalogueStore::openForWriting(m_fixture->path());
        QVERIFY(database);
        QCOMPARE((*database)->execAndGet("PRAGMA journal_mode").getString(), std::string("wal"));
        constexpr int Full = 2;
        QCOMPARE((*database)->execAndGet("PRAGMA synchronous").getInt(), Full);
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void olderFileIsCopiedAndBroughtUpToDate()
    {
        makeFirstVersion();
        QCOMPARE(m_fixture->search(u"old pier"_s), QStringList(u"Old.Pier.2001|eng"_s)); // readable as it is
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"old pier"_s), QStringList(u"Old.Pier.2001|eng"_s));
        QCOMPARE(m_fixture->contentOf(1), QByteArray("ABC"));
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);

        SQLite::Database copy(name(u".version-1"_s));
        QCOMPARE(copy.execAndGet("PRAGMA user_version").getInt(), 1);
        QCOMPARE(copy.execAndGet("SELECT count(*) FROM subtitle").getInt(), 1);
        QCOMPARE(copy.execAndGet("PRAGMA integrity_check").getString(), std::string("ok"));
    }

    void fileThatCannotBeCopiedIsNotBroughtUpToDate()
    {
        makeFirstVersion();
        const QString copy = m_fixture->path() + u".version-1"_s;
        QVERIFY(QFile::link(u"no/such/place"_s, copy)); // in the way, and nobody can write through it
        const auto opened = CatalogueStore::openForWriting(m_fixture->path());
        QVERIFY(!opened);
        QVERIFY(opened.error().localizedDescription.contains(u"copy of the older file cannot be kept"_s));
        {
            SQLite::Database same(name());
            QCOMPARE(same.execAndGet("PRAGMA user_version").getInt(), 1);
        }
        const QStringList beside =
            QFileInfo(m_fixture->path()).dir().entryList({u"*.version-1*"_s}, QDir::Files | QDir::System);
        QCOMPARE(beside, QStringList(QFileInfo(copy).fileName())); // and no draft
        QVERIFY(QFile::remove(copy));
        QCOMPARE(m_fixture->add().added, 1);
    }

    void damagedFileIsNotBroughtUpToDate()
    {
        makeFirstVersion();
        {
            SQLite::Database database(name(), SQLite::OPEN_READWRITE);
            database.exec("PRAGMA writable_schema = ON");
            database.exec("DELETE FROM sqlite_master WHERE name = 'film_imdb'"); // its pages belong to nobody
        }
        const auto opened = CatalogueStore::openForWriting(m_fixture->path());
        QVERIFY(!opened);
        QVERIFY(opened.error().localizedDescription.contains(u"is damaged"_s));
        QVERIFY(!QFileInfo::exists(m_fixture->path() + u".version-1"_s));
        SQLite::Database same(name());
        QCOMPARE(same.execAndGet("PRAGMA user_version").getInt(), 1);
    }

    void fileOfAnotherProgramOrALaterVersionIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("statement");
        QTest::newRow("another program") << QByteArray("PRAGMA application_id = 7");
        QTest::newRow("a later version") << QByteArray("PRAGMA user_version = 99");
    }

    void fileOfAnotherProgramOrALaterVersionIsLeftAlone()
    {
        QFETCH(QByteArray, statement);
        QFile::remove(m_fixture->path());
        makeFirstVersion();
        SQLite::Database(name(), SQLite::OPEN_READWRITE).exec(statement.toStdString());
        QVERIFY(!CatalogueStore::openForWriting(m_fixture->path()));
    }

    void whatTheFileBringsAlongDoesNotRun()
    {
        m_fixture->add();
        {
            SQLite::Database database(name(), SQLite::OPEN_READWRITE);
            database.exec("CREATE TRIGGER odd AFTER INSERT ON subtitle BEGIN DELETE FROM subtitle; END");
        }
        m_fixture->write(u"Harbour.Lights.2019.720p.en.srt"_s, ImportFixture::cue(u"b"_s));
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 2);
    }

    void draftsThatNobodyWritesToAreRemoved()
    {
        const auto draft = [&](const QString &suffix, const QDateTime &modified) {
            const QString path = m_fixture->path() + suffix;
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) ||
                !file.setFileTime(modified, QFileDevice::FileModificationTime))
                qFatal("%s cannot be written", qUtf8Printable(path));
            return path;
        };
        const QDateTime now = QDateTime::currentDateTime();
        const QString abandoned = draft(u".1.draft"_s, now.addDays(-1));
        const QString log = draft(u".1.draft-wal"_s, now.addDays(-1));
        const QString fresh = draft(u".2.draft"_s, now);
        const QString foreign = draft(u"-notes.txt"_s, now.addDays(-1));
        m_fixture->add();
        QVERIFY(!QFileInfo::exists(abandoned) && !QFileInfo::exists(log));
        QVERIFY(QFileInfo::exists(fresh) && QFileInfo::exists(foreign));
    }

    void readerSeesTheLastCommitWhileAnotherWrites()
    {
        m_fixture->add();
        SQLite::Database writer(name(), SQLite::OPEN_READWRITE);
        writer.exec("BEGIN IMMEDIATE; DELETE FROM subtitle");
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        writer.exec("COMMIT");
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 0);
    }

    void writerWaitsForNoReader()
    {
        m_fixture->add();
        SQLite::Database reader(name(), SQLite::OPEN_READONLY);
        SQLite::Statement reading(reader, "SELECT id FROM subtitle");
        QVERIFY(reading.executeStep());
        m_fixture->write(u"Harbour.Nights.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        const CatalogueStore::Patience endless{1h}; // one that waited for the reader would not come back
        Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path(), &endless);
        QVERIFY(catalogue);
        CatalogueImport import(catalogue.value(), {}, [](const ImportCounts &) { return true; });
        QVERIFY(import.add(m_fixture->folder()));
        QCOMPARE(import.counts().added, 1);
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 2);
    }

    void vacuumShrinksTheFileAndKeepsTheRest()
    {
        for (int i = 0; i < 60; ++i) {
            QString text; // hardly packable
            for (int j = 0; j < 400; ++j)
                text += QString::number(qHash(i * 1000 + j), 36);
            m_fixture->write(u"many/Harbour.Lights.S01E%1.en.srt"_s.arg(i), ImportFixture::cue(text));
        }
        m_fixture->add();
        Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
        QVERIFY(catalogue);
        QCOMPARE(*catalogue.value().removeBelow(m_fixture->folder() + u"/many"_s, 1000), 60);
        catalogue.value().settle();
        const qint64 before = QFileInfo(m_fixture->path()).size();
        QVERIFY(catalogue.value().vacuum());
        QVERIFY(QFileInfo(m_fixture->path()).size() < before / 2);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }
};

PLOVENDIX_TEST(CatalogueStoreTest)
#include "CatalogueStoreTest.moc"
