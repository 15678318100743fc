#include <base/LocalizedString.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class StringHelpersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void charactersAreRemovedByScalar_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QSet<char32_t>>("characters");
        QTest::addColumn<QString>("kept");
        using Set = QSet<char32_t>;
        QTest::newRow("hyphen and space") << u"ab-c d"_s << Set{U'-', U' '} << u"abcd"_s;
        QTest::newRow("empty set") << u"ab-c d"_s << Set{} << u"ab-c d"_s;
        QTest::newRow("empty text") << QString() << Set{U'-'} << QString();
        QTest::newRow("everything") << u"---"_s << Set{U'-'} << QString();
        QTest::newRow("a combining mark leaves its letter") << u"e\u0301te"_s << Set{U'\u0301'} << u"ete"_s;
        QTest::newRow("a letter leaves its mark") << u"e\u0301"_s << Set{U'e'} << u"\u0301"_s;
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

PLOVENDIX_TEST(StringHelpersTest)
#include "StringHelpersTest.moc"
