#include "Witness.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray settings(const QByteArray &language)
{
    return "[General]\nlanguageCode=" + language + "\n";
}
} // namespace

/// What other processes do to the settings file while the program runs.
class UserDefaultsWatchingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = u"watched-%1"_s.arg(++m_number);
        m_path = m_sandbox.path(m_folder + u"/Plovendix.conf"_s);
    }

    void replacedAndRewrittenFilesAreNoticed()
    {
        write(settings("de"));
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        QVariantList expected;
        for (const char *language : {"fr", "it", "es"}) {
            replace(settings(language));
            expected += QString::fromLatin1(language);
            QTRY_COMPARE(witness.seen(), expected);
        }
        write(settings("nl"));
        QTRY_COMPARE(witness.seen().last(), QVariant(u"nl"_s));
    }

    void deletedFileShowsTheRegisteredValueUntilItIsMadeAgain()
    {
        write(settings("de"));
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"languageCode"_s, u"it"_s}});
        const Witness witness(defaults, u"languageCode"_s);
        QVERIFY(QFile::remove(m_path));
        QTRY_COMPARE(witness.seen(), QVariantList{u"it"_s});
        write(settings("fr"));
        QTRY_COMPARE(witness.seen(), (QVariantList{u"it"_s, u"fr"_s}));
    }

    void fileInAFolderThatDidNotExistIsNoticed()
    {
        m_folder += u"/deep/deeper"_s;
        m_path = m_sandbox.path(m_folder + u"/Plovendix.conf"_s);
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        write(settings("fr"));
        QTRY_COMPARE(witness.seen(), QVariantList{u"fr"_s});
        replace(settings("it"));
        QTRY_COMPARE(witness.seen().last(), QVariant(u"it"_s));
    }

    void folderMadeAgainIsNoticed()
    {
        write(settings("de"));
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        QVERIFY(QDir(m_sandbox.path(m_folder)).removeRecursively());
        QTRY_COMPARE(witness.seen(), QVariantList{QVariant()});
        write(settings("fr"));
        QTRY_COMPARE(witness.seen(), (QVariantList{QVariant(), u"fr"_s}));
    }

    void eachChangeReachesObserversOnce()
    {
        write(settings("de"));
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        write(settings("fr"));
        defaults.synchronize();
        QCOMPARE(witness.seen(), QVariantList{u"fr"_s});
        replaceAndAwait(defaults, settings("fr"));
        QCOMPARE(witness.seen(), QVariantList{u"fr"_s});
    }

    void ownChangeIsNotReportedAgain()
    {
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        const Witness interval(defaults, u"SUScheduledCheckInterval"_s);
        defaults.setObject(u"languageCode"_s, u"de"_s);
        defaults.setObject(u"SUScheduledCheckInterval"_s, 3600);
        replaceAndAwait(defaults, settings("de") + "SUScheduledCheckInterval=3600\n");
        QCOMPARE(witness.seen(), QVariantList{u"de"_s});
        QCOMPARE(interval.seen(), QVariantList{3600LL});
    }

    void sameValueWrittenByAnotherIsNoChange()
    {
        write(settings("de"));
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"SUScheduledCheckInterval"_s, u"86400"_s}});
        const Witness interval(defaults, u"SUScheduledCheckInterval"_s);
        const Witness language(defaults, u"languageCode"_s);
        replaceAndAwait(defaults, "[General]\nSUScheduledCheckInterval=86400\nlanguageCode=\"de\"\n");
        QVERIFY(interval.seen().isEmpty());
        QVERIFY(language.seen().isEmpty());
        QCOMPARE(defaults.object(u"SUScheduledCheckInterval"_s), QVariant(86400LL));
    }

private:
    void write(const QByteArray &content) const
    {
        m_sandbox.writeFile(m_folder + u"/Plovendix.conf"_s, content);
    }

    void replace(const QByteArray &content) const
    {
        const QString next = m_sandbox.writeFile(m_folder + u"/next"_s, content);
        if (::rename(QFile::encodeName(next).constData(), QFile::encodeName(m_path).constData()) != 0)
            qFatal("The settings file could not be replaced");
    }

    /// Waits until a change made after the ones before has been taken in, so that nothing can still be on its
    /// way.
    void replaceAndAwait(UserDefaults &defaults, const QByteArray &rest)
    {
        const Witness marker(defaults, u"marker"_s);
        replace(rest + "marker=" + QByteArray::number(m_number) + "\n");
        QTRY_COMPARE(marker.seen().size(), 1);
    }

    Sandbox m_sandbox;
    QString m_folder;
    QString m_path;
    int m_number = 0;
};

PLOVENDIX_TEST(UserDefaultsWatchingTest)
#include "UserDefaultsWatchingTest.moc"
