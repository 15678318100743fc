#include "Witness.h"

#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// What stands in the settings file's place when it should not, and places that cannot be written.
class UserDefaultsDamageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = u"damage-%1"_s.arg(++m_number);
        m_path = m_sandbox.path(m_folder + u"/Plovendix.conf"_s);
    }

    void damagedFileIsKeptAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("binary") << QByteArray("\x7f\x45\x4c\x46\x00\x01\xff", 7);
        QTest::newRow("half-written") << QByteArray("[General]\nlanguageCode=de\nSUEna");
        QTest::newRow("zeros") << QByteArray(512, '\0');
        QTest::newRow("another format") << QByteArray("<plist/>");
        QTest::newRow("too large") << "[General]\n#" + QByteArray(2 * 1024 * 1024, 'x') +
                                          "\nlanguageCode=de\n";
    }

    void damagedFileIsKeptAside()
    {
        QFETCH(QByteArray, content);
        write(content);
        UserDefaults defaults(m_path);
        QCOMPARE(defaults.languageCode(), u"en"_s);
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(filesBeside(), (QStringList{u"Plovendix.conf"_s, u"Plovendix.conf.damaged-1"_s}));
        QCOMPARE(read(m_path + u".damaged-1"_s), content);
        QCOMPARE(UserDefaults(m_path).languageCode(), u"fr"_s);
    }

    void damagedFileStaysWhileNothingIsWritten()
    {
        write("junk");
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        defaults.synchronize();
        QCOMPARE(defaults.languageCode(), u"de"_s);
        QCOMPARE(filesBeside(), QStringList{u"Plovendix.conf"_s});
        QCOMPARE(read(m_path), QByteArray("junk"));
        write("[General]\nlanguageCode=fr\n"); // the person repairs it
        defaults.synchronize();
        QCOMPARE(defaults.languageCode(), u"fr"_s);
    }

    void everyDamagedFileGetsANameOfItsOwn()
    {
        for (const char *content : {"first", "second"}) {
            write(content);
            UserDefaults(m_path).setObject(u"key"_s, 1);
        }
        QCOMPARE(read(m_path + u".damaged-1"_s), QByteArray("first"));
        QCOMPARE(read(m_path + u".damaged-2"_s), QByteArray("second"));
    }

    void valuesKnownBeforeTheDamageAreWrittenAgain()
    {
        write("[General]\nlanguageCode=de\n");
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        write("[General]\nlanguag");
        defaults.synchronize();
        QCOMPARE(defaults.languageCode(), u"de"_s);
        defaults.setObject(u"key"_s, 1);
        QCOMPARE(UserDefaults(m_path).languageCode(), u"de"_s);
        QCOMPARE(UserDefaults(m_path).integer(u"key"_s), 1);
        QCOMPARE(read(m_path + u".damaged-1"_s), QByteArray("[General]\nlanguag"));
        QVERIFY(witness.seen().isEmpty());
    }

    void folderInTheFilesPlaceIsKeptAside()
    {
        QVERIFY(QDir().mkpath(m_path + u"/inner"_s));
        UserDefaults defaults(m_path);
        defaults.setObject(u"key"_s, 1);
        QCOMPARE(UserDefaults(m_path).integer(u"key"_s), 1);
        QVERIFY(QFileInfo(m_path + u".damaged-1/inner"_s).isDir());
    }

    void valuesHoldUntilThePlaceCanBeWritten()
    {
        // A file where the folder should be: nobody, root included, can write there.
        const QString obstacle = m_sandbox.writeFile(m_folder, "in the way");
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        defaults.setObject(u"languageCode"_s, u"de"_s);
        defaults.setObject(u"gone"_s, 1);
        defaults.removeObject(u"gone"_s);
        defaults.synchronize();
        QCOMPARE(defaults.languageCode(), u"de"_s);
        QCOMPARE(witness.seen(), QVariantList{u"de"_s});
        QCOMPARE(read(obstacle), QByteArray("in the way"));
        QVERIFY(QFile::remove(obstacle));
        write("[General]\nlanguageCode=fr\nother=1\ngone=1\n");
        defaults.synchronize();
        const UserDefaults again(m_path);
        QCOMPARE(again.languageCode(), u"de"_s);
        QCOMPARE(again.integer(u"other"_s), 1);
        QVERIFY(!again.object(u"gone"_s).isValid());
    }

    void fullDiskKeepsTheSettings_data() { FullDisk::addRows(); }

    void fullDiskKeepsTheSettings()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        const QString path = disk.path(u"Plovendix.conf"_s);
        UserDefaults defaults(path);
        defaults.setObject(u"languageCode"_s, u"de"_s);
        defaults.setObject(u"other"_s, 1);
        const QByteArray before = read(path);
        disk.fill();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^The settings were not written: "_s));
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(read(path), before);
        QCOMPARE(disk.files(), QStringList{u"Plovendix.conf"_s});
        QCOMPARE(defaults.languageCode(), u"fr"_s);
        disk.makeRoom();
        defaults.synchronize();
        const UserDefaults again(path);
        QCOMPARE(again.languageCode(), u"fr"_s);
        QCOMPARE(again.integer(u"other"_s), 1);
    }

    void damageOnAFullDiskLosesNothing_data() { FullDisk::addRows(); }

    void damageOnAFullDiskLosesNothing()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        const QString path = disk.path(u"Plovendix.conf"_s);
        UserDefaults defaults(path);
        defaults.setObject(u"languageCode"_s, u"de"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("junk") == 4);
        file.close();
        disk.fill();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was damaged and is kept as "_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^The settings were not written: "_s));
        defaults.setObject(u"other"_s, 1);
        QCOMPARE(read(path + u".damaged-1"_s), QByteArray("junk"));
        disk.makeRoom();
        defaults.setObject(u"third"_s, 3);
        const UserDefaults again(path);
        QCOMPARE(again.languageCode(), u"de"_s);
        QCOMPARE(again.integer(u"other"_s), 1);
        QCOMPARE(again.integer(u"third"_s), 3);
    }

private:
    void write(const QByteArray &content) const
    {
        m_sandbox.writeFile(m_folder + u"/Plovendix.conf"_s, content);
    }

    QByteArray read(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList filesBeside() const
    {
        return QDir(m_sandbox.path(m_folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    Sandbox m_sandbox;
    QString m_folder;
    QString m_path;
    int m_number = 0;
};

PLOVENDIX_TEST(UserDefaultsDamageTest)
#include "UserDefaultsDamageTest.moc"
