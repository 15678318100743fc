#include "ImportFixture.h"

#include <tests/support/TestMain.h>

#include <QFile>

using namespace Qt::StringLiterals;

/// Subtitles inside archives, honest and hostile ones.
class ArchiveMembersTest : public QObject
{
    Q_OBJECT

    using Make = std::function<void(const ImportFixture &)>;
    using Members = ImportFixture::Members;

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    static Members many(int count)
    {
        Members members;
        for (int i = 1; i <= count; ++i)
            members += {u"Harbour.Lights.S01E%1.en.srt"_s.arg(i), ImportFixture::cue(QString::number(i))};
        return members;
    }
    static Members zeros(int count, int bytes)
    {
        Members members;
        for (int i = 0; i < count; ++i)
            members += {u"zeros%1.bin"_s.arg(i), QByteArray(bytes, '\0')};
        return members + Members{{u"Behind.2019.srt"_s, ImportFixture::cue(u"a"_s)}};
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
    static void cutDirectory(const QString &path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const qsizetype directory = file.readAll().indexOf("PK\1\2");
        QVERIFY(directory > 0 && file.resize(directory));
    }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<ImportFixture>(m_sandbox); }

    void membersAreEntered_data()
    {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {".zip", ".7z", ".tar", ".tar.gz", ".tar.xz"})
            QTest::newRow(extension) << QString::fromLatin1(extension);
    }
    void membersAreEntered()
    {
        QFETCH(const QString, extension);
        m_fixture->writeArchive(u"Night.Ferry.2020"_s + extension,
                                {{u"readme.md"_s, "x"},
                                 {u"Subs/2_German.srt"_s, ImportFixture::cue(u"a"_s)},
                                 {u"../../Harbour.Lights.2019.en.srt"_s, ImportFixture::cue(u"b"_s)}});
        QCOMPARE(m_fixture->add().added, 2);
        const QStringList found = m_fixture->search(u"night ferry"_s);
        QCOMPARE(found.size(), 1);
        QVERIFY(found.first().startsWith(u"Night.Ferry.2020"_s) && found.first().endsWith(u"|ger"_s));
        QCOMPARE(m_fixture->search(u"harbour"_s), QStringList(u"Harbour.Lights.2019|eng"_s));
        QVERIFY(!QFile::exists(m_fixture->folder() + u"/../../Harbour.Lights.2019.en.srt"_s));
        QCOMPARE(m_fixture->add().known, 1);
    }

    void stoppedInTheMiddleItGoesOnAtTheNextMember()
    {
        m_fixture->writeArchive(u"all.zip"_s, many(20));
        int asked = 0;
        QVERIFY(m_fixture->addUntil([&](const ImportCounts &) { return ++asked < 5; }));
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 5);
        const ImportCounts rest = m_fixture->add();
        QCOMPARE(rest.added, 15);
        QCOMPARE(rest.known, 5);
        QCOMPARE(m_fixture->add().added, 0);
    }

    void stopIsAskedForAtMembersThatArePassedOver()
    {
        Members members;
        for (int i = 0; i < 20; ++i)
            members += {u"notes%1.md"_s.arg(i), "x"};
        m_fixture->writeArchive(u"notes.zip"_s, members);
        int asked = 0;
        QVERIFY(m_fixture->addUntil([&](const ImportCounts &) { return ++asked < 5; }));
        QCOMPARE(asked, 5);
        QCOMPARE(m_fixture->add().known, 0); // it was not gone through
    }

    void badArchiveGivesWhatIsReadableAndIsNamed_data()
    {
        QTest::addColumn<Make>("make");
        QTest::addColumn<int>("added");
        QTest::addColumn<QString>("problem");
        const QString tooMuch = u"unpacks to more than an archive of its size should"_s;
        const QString damaged = u"is damaged or not an archive that can be read"_s;
        const QString locked = u"is protected by a password"_s;
        const auto row = [](const char *label, int added, const QString &problem, const Make &make) {
            QTest::newRow(label) << make << added << problem;
        };
        row("member of zeros", 1, tooMuch, [](const ImportFixture &files) {
            files.writeArchive(u"bomb.tar.gz"_s,
                               many(1) + Members{{u"Zeros.2019.srt"_s, QByteArray(200 * 1024 * 1024, '\0')}} +
                                   zeros(0, 0));
        });
        // Each member is allowed, but all of them have to be unpacked on the way to the last one.
        for (const char *name : {"bomb.7z", "bomb.tar.gz", "bomb.zip"}) {
            row(name, 0, tooMuch, [name](const ImportFixture &files) {
                files.writeArchive(QString::fromLatin1(name), zeros(5, 15 * 1024 * 1024));
            });
        }
        row("passed-over member of unstated size", 0, tooMuch, [](const ImportFixture &files) {
            cutDirectory(files.writeArchive(u"bomb.zip"_s, zeros(1, 80 * 1024 * 1024), {},
                                            ImportFixture::Sizes::Unstated));
        });
        row("members of unstated sizes without a list", 4, damaged, [](const ImportFixture &files) {
            cutDirectory(files.writeArchive(u"cut.zip"_s, zeros(1, 1024 * 1024) + many(3), {},
                                            ImportFixture::Sizes::Unstated));
        });
        row("text", 0, damaged, [](const ImportFixture &files) {
            files.write(u"not.zip"_s, "just text, and no more than that");
        });
        row("locked", 0, locked,
            [](const ImportFixture &files) { files.writeArchive(u"locked.zip"_s, many(3), "secret"); });
        row("one member locked", 2, locked, [](const ImportFixture &files) {
            markAsLocked(files.writeArchive(u"mixed.zip"_s, many(3)), "Harbour.Lights.S01E2.en.srt");
        });
        row("member too large", 1, u": Large.2019.srt is too large for a subtitle"_s,
            [](const ImportFixture &files) {
                files.writeArchive(u"mixed.zip"_s,
                                   Members{{u"Large.2019.srt"_s, QByteArray(9 * 1024 * 1024, 'x')}} +
                                       many(1));
            });
    }
    void badArchiveGivesWhatIsReadableAndIsNamed()
    {
        QFETCH(const Make, make);
        QFETCH(const QString, problem);
        make(*m_fixture);
        const ImportCounts counts = m_fixture->add();
        QTEST(int(counts.added), "added");
        QCOMPARE(counts.refused, 1);
        QVERIFY2(counts.problems.first().endsWith(problem), qPrintable(counts.problems.first()));
        QCOMPARE(m_fixture->add().known, 1); // it is not read again before it changes
    }

    void cutArchiveGivesItsBeginning()
    {
        QFile file(m_fixture->writeArchive(u"cut.tar.gz"_s, many(200)));
        QVERIFY(file.resize(file.size() / 2));
        const ImportCounts counts = m_fixture->add();
        QVERIFY(counts.added > 0 && counts.added < 200);
        QVERIFY(counts.problems.first().contains(u"cut.tar.gz is damaged"_s));
    }

    void lockedMemberThatIsNoSubtitleDoesNotMatter()
    {
        markAsLocked(m_fixture->writeArchive(u"mixed.zip"_s, many(2) + Members{{u"notes.md"_s, "x"}}),
                     "notes.md");
        const ImportCounts counts = m_fixture->add();
        QCOMPARE(counts.added, 2);
        QCOMPARE(counts.refused, 0);
    }
};

PLOVENDIX_TEST(ArchiveMembersTest)
#include "ArchiveMembersTest.moc"
