#include "ScopedVariable.h"

#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
QByteArray propertyList(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content + "</plist>\n";
}
} // namespace

class BundleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = u"bundle-%1"_s.arg(++m_number); }

    void textIsLookedUpInTheLanguage_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("text");
        QTest::newRow("language") << QStringList{u"de"_s} << u"Sichern"_s;
        QTest::newRow("region without a table") << QStringList{u"de_AT"_s} << u"Sichern"_s;
        QTest::newRow("region with one") << QStringList{u"pt_BR"_s} << u"Salvar"_s;
        QTest::newRow("region spelled with a hyphen") << QStringList{u"pt-BR"_s} << u"Salvar"_s;
        QTest::newRow("another region") << QStringList{u"pt_PT.UTF-8"_s} << u"Guardar"_s;
        QTest::newRow("modifier") << QStringList{u"de_DE.UTF-8@euro"_s} << u"Sichern"_s;
        QTest::newRow("second choice") << QStringList{u"xx"_s, u"de"_s} << u"Sichern"_s;
        QTest::newRow("first of several") << QStringList{u"pt"_s, u"de"_s} << u"Guardar"_s;
        QTest::newRow("none there") << QStringList{u"fr"_s} << u"Save"_s;
        QTest::newRow("none wanted") << QStringList{} << u"Save"_s;
    }

    void textIsLookedUpInTheLanguage()
    {
        QFETCH(QStringList, languages);
        QFETCH(QString, text);
        writeTable(u"de"_s, u"Save"_s, u"Sichern"_s);
        writeTable(u"pt"_s, u"Save"_s, u"Guardar"_s);
        writeTable(u"pt-BR"_s, u"Save"_s, u"Salvar"_s);
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations(languages);
        QCOMPARE(bundle.localizedString(u"Save"_s), text);
    }

    void missingTextGivesTheValueElseTheKey()
    {
        writeTable(u"de"_s, u"Save"_s, u"Sichern"_s);
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations({u"de"_s});
        QCOMPARE(bundle.localizedString(u"Open"_s), u"Open"_s);
        QCOMPARE(bundle.localizedString(u"Open"_s, u"Öffnen"_s), u"Öffnen"_s);
        QCOMPARE(bundle.localizedString(u"Save"_s, u"other"_s), u"Sichern"_s);
    }

    void englishNeedsNoTable()
    {
        writeTable(u"de"_s, u"Save"_s, u"Sichern"_s);
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations({u"en_GB"_s, u"de"_s});
        QCOMPARE(bundle.localizedString(u"Save"_s), u"Save"_s);
    }

    void damagedTableCountsAsMissing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("junk") << QByteArray("\x00\xff\x13junk", 7);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << propertyList("<dict><key>Save</key><string>Sich").left(80);
    }

    void damagedTableCountsAsMissing()
    {
        QFETCH(QByteArray, content);
        write(u"de.lproj/Localizable.strings"_s, content);
        writeTable(u"pt"_s, u"Save"_s, u"Guardar"_s);
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations({u"de"_s});
        QCOMPARE(bundle.localizedString(u"Save"_s), u"Save"_s);
        bundle.setPreferredLocalizations({u"de"_s, u"pt"_s});
        QCOMPARE(bundle.localizedString(u"Save"_s), u"Guardar"_s);
    }

    void environmentChoosesTheLanguage_data()
    {
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QByteArray>("all");
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<QString>("text");
        QTest::newRow("LANG") << QByteArray() << QByteArray() << QByteArray("de_DE.UTF-8") << u"Sichern"_s;
        QTest::newRow("LC_ALL over LANG")
            << QByteArray() << QByteArray("pt_PT") << QByteArray("de_DE") << u"Guardar"_s;
        QTest::newRow("LANGUAGE first")
            << QByteArray("xx:de") << QByteArray("pt_PT") << QByteArray() << u"Sichern"_s;
        QTest::newRow("locale after LANGUAGE")
            << QByteArray("xx") << QByteArray("pt_PT") << QByteArray() << u"Guardar"_s;
        QTest::newRow("C ignores LANGUAGE")
            << QByteArray("de") << QByteArray("C") << QByteArray() << u"Save"_s;
        QTest::newRow("nothing set") << QByteArray("de") << QByteArray() << QByteArray() << u"Save"_s;
        QTest::newRow("C.UTF-8") << QByteArray() << QByteArray("C.UTF-8") << QByteArray("de_DE") << u"Save"_s;
    }

    void environmentChoosesTheLanguage()
    {
        QFETCH(QByteArray, language);
        QFETCH(QByteArray, all);
        QFETCH(QByteArray, lang);
        QFETCH(QString, text);
        const ScopedVariable first("LANGUAGE", language);
        const ScopedVariable second("LC_ALL", all);
        const ScopedVariable third("LC_MESSAGES");
        const ScopedVariable fourth("LANG", lang);
        writeTable(u"de"_s, u"Save"_s, u"Sichern"_s);
        writeTable(u"pt"_s, u"Save"_s, u"Guardar"_s);
        QCOMPARE(Bundle(m_sandbox.path(m_folder)).localizedString(u"Save"_s), text);
    }

    void infoDictionaryIsRead()
    {
        write(u"Info.plist"_s,
              propertyList("<dict><key>CFBundleName</key><string>Plovendix</string></dict>"));
        const Bundle bundle(m_sandbox.path(m_folder));
        QCOMPARE(bundle.objectForInfoDictionaryKey(u"CFBundleName"_s), QVariant(u"Plovendix"_s));
        QVERIFY(!bundle.objectForInfoDictionaryKey(u"CFBundleVersion"_s).isValid());
        QCOMPARE(bundle.infoDictionary()->size(), 1);
        QVERIFY(QFile::remove(m_sandbox.path(m_folder + u"/Info.plist"_s)));
        QCOMPARE(bundle.objectForInfoDictionaryKey(u"CFBundleName"_s), QVariant(u"Plovendix"_s));
    }

    void missingOrDamagedInfoGivesNothing()
    {
        QVERIFY(!Bundle(m_sandbox.path(m_folder)).infoDictionary());
        write(u"Info.plist"_s, "junk");
        QVERIFY(!Bundle(m_sandbox.path(m_folder)).infoDictionary());
        write(u"de.lproj/Localizable.strings"_s,
              propertyList("<dict><key>Save</key><integer>1</integer></dict>"));
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations({u"de"_s}); // with a number for a text
        QVERIFY(!bundle.infoDictionary());
        QVERIFY(!bundle.objectForInfoDictionaryKey(u"CFBundleName"_s).isValid());
        QCOMPARE(bundle.localizedString(u"Save"_s), u"Save"_s);
    }

    void resourceIsFoundAtTheTopElseInTheLanguagesFolder()
    {
        write(u"Credits.rtf"_s, "x");
        write(u"README"_s, "x");
        write(u"de.lproj/Credits.rtf"_s, "x");
        write(u"de.lproj/Only.rtf"_s, "x");
        const QString folder = m_sandbox.path(m_folder);
        Bundle bundle(folder);
        QVERIFY(!bundle.pathForResource(u"Only"_s, u"rtf"_s));
        bundle.setPreferredLocalizations({u"de_AT"_s});
        QCOMPARE(bundle.pathForResource(u"Credits"_s, u"rtf"_s), folder + u"/Credits.rtf"_s);
        QCOMPARE(bundle.pathForResource(u"Only"_s, u"rtf"_s), folder + u"/de.lproj/Only.rtf"_s);
        QCOMPARE(bundle.pathForResource(u"README"_s, u""_s), folder + u"/README"_s);
        QVERIFY(!bundle.pathForResource(u"Credits"_s, u"txt"_s));
        QVERIFY(!bundle.pathForResource(u""_s, u""_s));
    }

    void mainBundleMovesToAnotherFolder()
    {
        write(u"Info.plist"_s, propertyList("<dict><key>Key</key><string>new</string></dict>"));
        Bundle &bundle = Bundle::main();
        Bundle::setMainFolder(m_sandbox.path(m_folder));
        QCOMPARE(&Bundle::main(), &bundle);
        QCOMPARE(bundle.folder(), m_sandbox.path(m_folder));
        QCOMPARE(bundle.objectForInfoDictionaryKey(u"Key"_s), QVariant(u"new"_s));
        Bundle::setMainFolder(m_sandbox.path(u"nothing here"_s));
        QVERIFY(!bundle.objectForInfoDictionaryKey(u"Key"_s).isValid());
    }

    void anyThreadMayAsk()
    {
        writeTable(u"de"_s, u"Save"_s, u"Sichern"_s);
        write(u"Info.plist"_s, propertyList("<dict><key>Key</key><string>value</string></dict>"));
        Bundle bundle(m_sandbox.path(m_folder));
        bundle.setPreferredLocalizations({u"de"_s});
        std::atomic<int> right = 0;
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int index = 0; index < 4; ++index) {
            threads.emplace_back([&] {
                const bool isText = bundle.localizedString(u"Save"_s) == u"Sichern";
                const bool isInfo = bundle.objectForInfoDictionaryKey(u"Key"_s).toString() == u"value";
                right += isText && isInfo && bundle.pathForResource(u"Info"_s, u"plist"_s) ? 1 : 0;
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(right.load(), 4);
    }

private:
    void writeTable(const QString &language, const QString &key, const QString &text) const
    {
        const QString content = u"<dict><key>%1</key><string>%2</string></dict>"_s.arg(key, text);
        write(language + u".lproj/Localizable.strings"_s, propertyList(content.toUtf8()));
    }

    void write(const QString &name, const QByteArray &content) const
    {
        m_sandbox.writeFile(m_folder + u'/' + name, content);
    }

    Sandbox m_sandbox;
    QString m_folder;
    int m_number = 0;
};

PLOVENDIX_TEST(BundleTest)
#include "BundleTest.moc"
