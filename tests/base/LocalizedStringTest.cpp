#include <base/Bundle.h>
#include <base/LocalizedString.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class LocalizedStringTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

private Q_SLOTS:
    void aKeyWithoutATextIsItsOwnText()
    {
        Bundle::setMainFolder(m_sandbox.path(u"empty"_s));
        QCOMPARE(String::localize(u"No such text"_s, u"for translators"_s), u"No such text"_s);
        QCOMPARE(String::localize(QString()), QString());
    }

    void aKeyWithATextGivesIt()
    {
        m_sandbox.writeFile(u"bundle/de.lproj/Localizable.strings"_s,
                            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                            "<key>Cancel</key><string>Abbrechen</string></dict></plist>");
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
        Bundle::main().setPreferredLocalizations({u"de"_s});
        QCOMPARE(String::localize(u"Cancel"_s), u"Abbrechen"_s);
        QCOMPARE(String::localize(u"OK"_s), u"OK"_s);
        QCOMPARE(String::localize("Cancel", "of a button"), u"Abbrechen"_s);
        QCOMPARE(String::localize("Caf\xc3\xa9", nullptr), u"Caf\u00e9"_s);
    }

    void placesTakeTheirTexts_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QString>("filled");
        QTest::newRow("one") << u"Send to %@"_s << QStringList{u"Tessaly"_s} << u"Send to Tessaly"_s;
        QTest::newRow("in turn") << u"Version %@ (%@)"_s << QStringList{u"2.1"_s, u"214"_s}
                                 << u"Version 2.1 (214)"_s;
        QTest::newRow("a number") << u"(%d found)"_s << QStringList{u"12"_s} << u"(12 found)"_s;
        QTest::newRow("another order") << u"%2$@ von %1$@"_s << QStringList{u"a"_s, u"b"_s} << u"b von a"_s;
        QTest::newRow("twice") << u"%1$@, %1$@"_s << QStringList{u"a"_s} << u"a, a"_s;
        QTest::newRow("marks in the texts")
            << u"“%1$@” in “%2$@”"_s << QStringList{u"%2$@ %@"_s, u"%1$@"_s} << u"“%2$@ %@” in “%1$@”"_s;
        QTest::newRow("a mark in a text in turn") << u"%@ %@"_s << QStringList{u"%@"_s, u"b"_s} << u"%@ b"_s;
        QTest::newRow("beyond the basic plane")
            << u"\U0001f3ac %@"_s << QStringList{u"\U0001f600"_s} << u"\U0001f3ac \U0001f600"_s;
        QTest::newRow("too few texts") << u"%@ (%@) %3$@"_s << QStringList{u"a"_s} << u"a () "_s;
        QTest::newRow("too many texts") << u"%@"_s << QStringList{u"a"_s, u"b"_s} << u"a"_s;
        QTest::newRow("no place") << u"100 % %0$@ %1$"_s << QStringList{u"a"_s} << u"100 % %0$@ %1$"_s;
        QTest::newRow("nothing") << QString() << QStringList{u"a"_s} << QString();
    }
    void placesTakeTheirTexts()
    {
        QFETCH(QString, format);
        QFETCH(QStringList, texts);
        QFETCH(QString, filled);
        QCOMPARE(String::fill(format, texts), filled);
    }

    void charactersAreRemovedByScalar_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QSet<char32_t>>("characters");
        QTest::addColumn<QString>("kept");
        using Set = QSet<char32_t>;
        QTest::newRow("hyphen and space") << u"ab-c d"_s << Set{U'-', U' '} << u"abcd"_s;
        QTest::newRow("empty set") << u"ab-c d"_s << Set{} << u"ab-c d"_s;
        QTest::newRow("empty text") << QString() << Set{U'-'} << QString();
        QTest::newRow("a combining mark leaves its letter") << u"e\u0301te"_s << Set{U'\u0301'} << u"ete"_s;
        QTest::newRow("a whole letter is not its parts")
            << u"\u00e9"_s << Set{U'e', U'\u0301'} << u"\u00e9"_s;
        QTest::newRow("beyond the basic plane") << u"a\U0001f3acb"_s << Set{U'\U0001f3ac'} << u"ab"_s;
        QTest::newRow("kept beyond the basic plane") << u"a\U0001f3acb"_s << Set{U'a'} << u"\U0001f3acb"_s;
    }

    void charactersAreRemovedByScalar()
    {
        QFETCH(QString, text);
        QFETCH(QSet<char32_t>, characters);
        QFETCH(QString, kept);
        QCOMPARE(String::removingCharacters(text, characters), kept);
    }
};

PLOVENDIX_TEST(LocalizedStringTest)
#include "LocalizedStringTest.moc"
