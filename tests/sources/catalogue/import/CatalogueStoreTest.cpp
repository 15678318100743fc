#include "ImportFixture.h"

#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The file itself: how it is made, which files are refused, and who may use it at once.
class CatalogueStoreTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<ImportFixture>(m_sandbox);
        m_fixture->write(u"Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"a"_s));
    }

    void fileIsSafeAgainstPowerLoss()
    {
        const auto database = CatalogueStore::openForWriting(m_fixture->path());
        QVERIFY(database);
        QCOMPARE((*database)->execAndGet("PRAGMA journal_mode").getString(), std::string("wal"));
        constexpr int Full = 2;
        QCOMPARE((*database)->execAndGet("PRAGMA synchronous").getInt(), Full);
    }

    void fileOfAnotherProgramOrVersionIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("statement");
        QTest::addColumn<QString>("error");
        QTest::newRow("another program")
            << QByteArray("PRAGMA application_id = 7") << u": is not a subtitle catalogue"_s;
        QTest::newRow("an earlier version")
            << QByteArray("PRAGMA user_version = 1") << u": was made by another version of Plovendix"_s;
        QTest::newRow("a later version")
            << QByteArray("PRAGMA user_version = 99") << u": was made by another version of Plovendix"_s;
    }
    void fileOfAnotherProgramOrVersionIsLeftAlone()
    {
        QFETCH(const QByteArray, statement);
        QFETCH(const QString, error);
        m_fixture->add();
        m_fixture->connection()->exec(statement.toStdString());
        const auto opened = CatalogueStore::openForWriting(m_fixture->path());
        QVERIFY(!opened);
        QCOMPARE(opened.error().localizedDescription, m_fixture->path() + error);
    }

    void whatTheFileBringsAlongDoesNotRun()
    {
        m_fixture->add();
        m_fixture->connection()->exec(
            "CREATE TRIGGER odd AFTER INSERT ON subtitle BEGIN DELETE FROM subtitle; END");
        m_fixture->write(u"Harbour.Lights.2019.720p.en.srt"_s, ImportFixture::cue(u"b"_s));
        QCOMPARE(m_fixture->add().added, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 2);
    }

    void staleDraftsAreRemoved()
    {
        const auto draft = [&](const QString &suffix, const QDateTime &modified) {
            QFile file(m_fixture->path() + suffix);
            if (!file.open(QIODevice::WriteOnly) ||
                !file.setFileTime(modified, QFileDevice::FileModificationTime))
                qFatal("%s cannot be written", qUtf8Printable(file.fileName()));
            return file.fileName();
        };
        const QDateTime now = QDateTime::currentDateTime();
        const QString abandoned = draft(u".1.draft"_s, now.addDays(-1));
        const QString log = draft(u".1.draft-wal"_s, now.addDays(-1));
        const QString fresh = draft(u".2.draft"_s, now);
        const QString foreign = draft(u"-notes.draft"_s, now.addDays(-1));
        m_fixture->add();
        QVERIFY(!QFileInfo::exists(abandoned) && !QFileInfo::exists(log));
        QVERIFY(QFileInfo::exists(fresh) && QFileInfo::exists(foreign));
    }

    void readerSeesTheLastCommitWhileAnotherWrites()
    {
        m_fixture->add();
        const auto writer = m_fixture->connection();
        writer->exec("BEGIN IMMEDIATE; DELETE FROM subtitle");
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 1);
        writer->exec("COMMIT");
        QCOMPARE(m_fixture->search(u"harbour"_s).size(), 0);
    }

    void writerWaitsForNoReader()
    {
        m_fixture->add();
        const auto reader = m_fixture->connection();
        SQLite::Statement reading(*reader, "SELECT id FROM subtitle");
        QVERIFY(reading.executeStep());
        m_fixture->write(u"Harbour.Nights.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        CatalogueStore::WaitLimits endless{1h}; // this test would not end if the writer waited
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
        QCOMPARE(m_fixture->remove(m_fixture->folder() + u"/many"_s), 60);
        Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
        QVERIFY(catalogue);
        catalogue.value().checkpoint();
        const qint64 before = QFileInfo(m_fixture->path()).size();
        QVERIFY(catalogue.value().vacuum());
        QVERIFY(QFileInfo(m_fixture->path()).size() < before / 2);
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
    }
};

PLOVENDIX_TEST(CatalogueStoreTest)
#include "CatalogueStoreTest.moc"
