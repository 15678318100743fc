#include "ImportFixture.h"

#include <sources/catalogue/import/ArchiveMembers.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

/// Subtitles inside archives, honest and hostile ones.
class CatalogueArchiveTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    ImportFixture::Members manyMembers(int count) const
    {
        ImportFixture::Members members;
        for (int i = 1; i <= count; ++i)
            members += {u"Harbour.Lights.S01E%1.en.srt"_s.arg(i), ImportFixture::cue(QString::number(i))};
        return members;
    }

    /// Sets the sign of encryption in both headers of a zip's member; its name stands in both.
    static void markAsLocked(const QString &path, const QByteArray &member)
    {
        constexpr qsizetype NameInMember = 30;
        constexpr qsizetype FlagsInMember = 6;
        constexpr qsizetype NameInDirectory = 46;
        constexpr qsizetype FlagsInDirectory = 8;
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        const qsizetype first = bytes.indexOf(member) - NameInMember + FlagsInMember;
        const qsizetype second = bytes.lastIndexOf(member) - NameInDirectory + FlagsInDirectory;
        QVERIFY(first > 0 && second > first);
        for (const qsizetype place : {first, second})
            bytes[place] = static_cast<char>(bytes[place] | 1);
        QVERIFY(file.seek(0) && file.write(bytes) == bytes.size());
    }

    /// Leaves a zip's members without the list of them, as a broken transfer does.
    static void withoutDirectory(const QString &path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const qsizetype directory = file.readAll().indexOf("PK\1\2");
        QVERIFY(directory > 0 && file.resize(directory));
    }

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<ImportFixture>(
            m_sandbox, QString::fromLatin1(QTest::currentTestFunction()) +
                           QString::fromLatin1(QTest::currentDataTag()).remove(u'.'));
    }

    void membersAreEntered_data()
    {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {".zip", ".7z", ".tar", ".tar.gz", ".tar.xz"})
            QTest::newRow(extension) << QString::fromLatin1(extension);
    }

    void membersAreEntered()
    {
        QFETCH(QString, extension);
        m_fixture->writeArchive(u"Night.Ferry.2020"_s + extension,
                                {{u"readme.md"_s, "x"},
                                 {u"Subs/2_German.srt"_s, ImportFixture::cue(u"a"_s)},
                                 {u"../../Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"b"_s)}});
        QCOMPARE(m_fixture->add().added, 2);
        QCOMPARE(m_fixture->search(u"night ferry"_s).size(), 1);
        QVERIFY(m_fixture->search(u"night ferry"_s).first().startsWith(u"Night.Ferry.2020"_s));
        QVERIFY(m_fixture->search(u"night ferry"_s).first().endsWith(u"|ger"_s));
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
        QVERIFY(!QFile::exists(m_fixture->folder() + u"/../../Harbour.Lights.2019.en.srt"_s));
        QCOMPARE(m_fixture->add().known, 1);
    }

    void stoppedInTheMiddleItGoesOnAtTheNextMember()
    {
        m_fixture->writeArchive(u"all.zip"_s, manyMembers(20));
        {
            Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
            QVERIFY(catalogue);
            int asked = 0;
            CatalogueImport import(catalogue.value(), {}, [&](const ImportCounts &) { return ++asked < 5; });
            const Result<CatalogueImport::End> end = import.add(m_fixture->folder());
            QVERIFY(end && *end == CatalogueImport::End::Stopped);
        }
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 5);
        const ImportCounts rest = m_fixture->add();
        QCOMPARE(rest.added, 15);
        QCOMPARE(rest.known, 5);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 20);
        QCOMPARE(m_fixture->add().added, 0);
    }

    void archiveThatUnpacksToTooMuchIsLeft()
    {
        ImportFixture::Members members = manyMembers(1);
        members += {u"Zeros.2019.srt"_s, QByteArray(200 * 1024 * 1024, '\0')};
        members += {u"Behind.2019.srt"_s, ImportFixture::cue(u"a"_s)};
        m_fixture->writeArchive(u"bomb.tar.gz"_s, members);
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 1);
        QCOMPARE(counts.refused, 1);
        QVERIFY(counts.problems.first().contains(u"bomb.tar.gz unpacks to more"_s));
        QCOMPARE(m_fixture->search(u"behind"_s), QStringList());
    }

    /// Each is allowed, but all of them have to be unpacked on the way to the last one.
    void membersThatArePassedOverCountAsWell_data()
    {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {".7z", ".tar.gz", ".zip"})
            QTest::newRow(extension) << QString::fromLatin1(extension);
    }
    void membersThatArePassedOverCountAsWell()
    {
        QFETCH(QString, extension);
        ImportFixture::Members members;
        for (int i = 0; i < 5; ++i)
            members += {u"zeros%1.bin"_s.arg(i), QByteArray(15 * 1024 * 1024, '\0')};
        members += {u"Behind.2019.srt"_s, ImportFixture::cue(u"a"_s)};
        m_fixture->writeArchive(u"bomb"_s + extension, members);
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.refused, 1);
        QVERIFY2(counts.problems.first().contains(u"unpacks to more"_s), qPrintable(counts.problems.first()));
        QCOMPARE(m_fixture->search(u"behind"_s), QStringList());
    }

    void memberOfUnstatedSizeIsBoundedWhereItIsPassedOver()
    {
        const QString path = m_fixture->writeArchive(u"bomb.zip"_s,
                                                     {{u"zeros.bin"_s, QByteArray(80 * 1024 * 1024, '\0')},
                                                      {u"Behind.2019.srt"_s, ImportFixture::cue(u"a"_s)}},
                                                     {}, ImportFixture::Sizes::Unstated);
        withoutDirectory(path);
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(m_fixture->search(u"behind"_s), QStringList());
        QVERIFY2(counts.problems.first().contains(u"unpacks to more"_s), qPrintable(counts.problems.first()));
    }

    void membersOfUnstatedSizesAreEntered()
    {
        ImportFixture::Members members{{u"zeros.bin"_s, QByteArray(1024 * 1024, '\0')}};
        members += manyMembers(3);
        withoutDirectory(m_fixture->writeArchive(u"cut.zip"_s, members, {}, ImportFixture::Sizes::Unstated));
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 3);
        QVERIFY2(counts.problems.first().contains(u"is damaged"_s), qPrintable(counts.problems.first()));
    }

    void stopIsAskedForAtMembersThatArePassedOver()
    {
        ImportFixture::Members members;
        for (int i = 0; i < 20; ++i)
            members += {u"notes%1.md"_s.arg(i), "x"};
        m_fixture->writeArchive(u"notes.zip"_s, members);
        Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_fixture->path());
        QVERIFY(catalogue);
        int asked = 0;
        CatalogueImport import(catalogue.value(), {}, [&](const ImportCounts &) { return ++asked < 5; });
        const Result<CatalogueImport::End> end = import.add(m_fixture->folder());
        QVERIFY(end && *end == CatalogueImport::End::Stopped);
        QCOMPARE(asked, 5);
        QCOMPARE(m_fixture->add().known, 0); // it was not gone through
    }

    void memberThatIsTooLargeIsRefusedAlone()
    {
        m_fixture->writeArchive(u"mixed.zip"_s, {{u"Large.2019.srt"_s, QByteArray(9 * 1024 * 1024, 'x')},
                                                 {u"Small.2019.srt"_s, ImportFixture::cue(u"a"_s)}});
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.refused, 1);
        QVERIFY2(counts.problems.first().endsWith(u"Large.2019.srt is too large for a subtitle"_s),
                 qPrintable(counts.problems.first()));
        QCOMPARE(m_fixture->search(u"small"_s), QStringList(u"Small.2019|und"_s));
    }

    void damagedArchiveGivesWhatIsReadableAndIsNamed()
    {
        const QString path = m_fixture->writeArchive(u"cut.tar.gz"_s, manyMembers(200));
        QFile file(path);
        QVERIFY(file.resize(file.size() / 2));
        const ImportCounts counts = m_fixture->add();
        QVERIFY(counts.added > 0 && counts.added < 200);
        QCOMPARE(counts.refused, 1);
        QVERIFY(counts.problems.first().contains(u"cut.tar.gz is damaged"_s));
    }

    void lockedArchiveIsNamedAsThat()
    {
        m_fixture->writeArchive(u"locked.zip"_s, manyMembers(3), "secret");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 0);
        QCOMPARE(counts.refused, 1);
        QVERIFY(counts.problems.first().endsWith(u"locked.zip is protected by a password"_s));
        QCOMPARE(m_fixture->add().known, 1); // it is not read again before it changes
    }

    void membersBesideALockedOneAreEntered()
    {
        const QString path = m_fixture->writeArchive(u"mixed.zip"_s, manyMembers(3));
        markAsLocked(path, "Harbour.Lights.S01E2.en.srt");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 2);
        QCOMPARE(counts.refused, 1);
        QVERIFY(counts.problems.first().endsWith(u"mixed.zip is protected by a password"_s));
    }

    void lockedMemberThatIsNoSubtitleDoesNotMatter()
    {
        ImportFixture::Members members = manyMembers(2);
        members += {u"notes.md"_s, "x"};
        markAsLocked(m_fixture->writeArchive(u"mixed.zip"_s, members), "notes.md");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 2);
        QCOMPARE(counts.refused, 0);
    }

    void textNamedLikeAnArchiveIsRefused()
    {
        m_fixture->write(u"not.zip"_s, "just text, and no more than that");
        QCOMPARE(m_fixture->add().refused, 1);
        QVERIFY(m_fixture->faults().isEmpty());
    }
};

PLOVENDIX_TEST(CatalogueArchiveTest)
#include "CatalogueArchiveTest.moc"
