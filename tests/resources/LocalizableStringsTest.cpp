#include "SourceTexts.h"

#include <base/PropertyList.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString SourceTree = QStringLiteral(PLOVENDIX_SOURCE_TREE);

QStringList sorted(const QSet<QString> &texts)
{
    QStringList list(texts.begin(), texts.end());
    list.sort();
    return list;
}

/// "%@", "%d", "%1$@" and their like in a text, in any order.
QStringList placeholdersOf(const QString &text)
{
    static const QRegularExpression placeholder(u"%(?:\\d\\$@|@|\\w)"_s);
    QStringList placeholders;
    for (auto match = placeholder.globalMatch(text); match.hasNext();)
        placeholders += match.next().captured();
    placeholders.sort();
    return placeholders;
}
} // namespace

/// The program's texts in the languages it speaks besides English.
class LocalizableStringsTest final : public QObject
{
    Q_OBJECT

private:
    SourceTexts m_source;
    QMap<QString, QVariantMap> m_tables; // by language

    void addLanguageRows() const
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : m_tables.keys())
            QTest::newRow(qPrintable(language)) << language;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_source = textsOfTree(SourceTree);
        for (const QString &language : {u"de"_s, u"fr"_s, u"es"_s, u"pt-BR"_s, u"ja"_s}) {
            const auto table =
                readPropertyList(SourceTree + u"/resources/"_s + language + u".lproj/Localizable.strings"_s);
            QVERIFY2(table, qPrintable(language));
            m_tables[language] = *table;
        }
    }

    void noOtherLanguageIsThere()
    {
        QStringList folders;
        for (const QString &language : m_tables.keys())
            folders += language + u".lproj"_s;
        QCOMPARE(QDir(SourceTree + u"/resources"_s).entryList({u"*.lproj"_s}, QDir::Dirs, QDir::Name),
                 folders);
    }

    void textsAreFoundInCode_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("helper") << u"String::localize(u\"Send to %@\"_s, u\"comment\"_s)"_s
                                << u"Send to %@"_s;
        QTest::newRow("bundle") << u"bundle.localizedString(QStringLiteral(\"Close\"))"_s << u"Close"_s;
        QTest::newRow("own helper") << u"x = localized(\"fps\");"_s << u"fps"_s;
        QTest::newRow("two lines") << u"localize(\n  u\"One \"\n  \"two\"_s)"_s << u"One two"_s;
        QTest::newRow("escapes") << u"localize(u\"a \\\"b\\\"\\n\\u2026\"_s)"_s << u"a \"b\"\n…"_s;
        QTest::newRow("kept for later") << u"return u\"“%1$@” is gone.\"_s;"_s << u"“%1$@” is gone."_s;
        QTest::newRow("after an address")
            << u"f(\"https://x\"); localize(\"Go\"); // localize(\"No\")"_s << u"Go"_s;
    }
    void textsAreFoundInCode()
    {
        QFETCH(QString, code);
        QFETCH(QString, text);
        QCOMPARE(sorted(textsOfCode(code).shown), QStringList{text});
    }

    void commentsAndPlainLiteralsAreNoTexts()
    {
        const SourceTexts texts = textsOfCode(u"/* localize(\"a\") */ f(\"b\"); // localize(\"c\")"_s);
        QCOMPARE(sorted(texts.shown), QStringList());
        QCOMPARE(sorted(texts.literals), QStringList{u"b"_s});
    }

    void textsAreFoundInScenes()
    {
        const SourceTexts texts =
            textsOfScene("<ui><string>Open</string><string notr=\"true\">openVideo:</string>"
                         "<string/><string comment=\"c\">A &amp; B</string></ui>");
        QCOMPARE(sorted(texts.shown), (QStringList{u"A & B"_s, u"Open"_s}));
    }

    void theProgramsOwnTextsAreFound()
    {
        QVERIFY(m_source.shown.size() > 50);
        QVERIFY(m_source.shown.contains(u"Send to %@"_s));
        QVERIFY(m_source.shown.contains(u"Drop a video here"_s));
        QVERIFY(m_source.shown.contains(u"The folder “%1$@” could not be created in “%2$@”: %3$@."_s));
    }

    void everyTextIsTranslated_data() { addLanguageRows(); }
    void everyTextIsTranslated()
    {
        QFETCH(QString, language);
        const QStringList known = m_tables.value(language).keys();
        const QSet<QString> missing = m_source.shown - QSet<QString>(known.begin(), known.end());
        QVERIFY2(missing.isEmpty(), qPrintable(sorted(missing).join(u'\n')));
    }

    void everyTranslationIsUsed_data() { addLanguageRows(); }
    void everyTranslationIsUsed()
    {
        QFETCH(QString, language);
        const QStringList known = m_tables.value(language).keys();
        const QSet<QString> unused = QSet<QString>(known.begin(), known.end()) - m_source.literals;
        QVERIFY2(unused.isEmpty(), qPrintable(sorted(unused).join(u'\n')));
    }

    void translationsAreTextsThatFitTheirKeys_data() { addLanguageRows(); }
    void translationsAreTextsThatFitTheirKeys()
    {
        QFETCH(QString, language);
        const QVariantMap table = m_tables.value(language);
        for (auto entry = table.begin(); entry != table.end(); ++entry) {
            QCOMPARE(entry->metaType(), QMetaType::fromType<QString>());
            const QString text = entry->toString();
            QVERIFY2(!text.trimmed().isEmpty(), qPrintable(entry.key()));
            QVERIFY2(placeholdersOf(text) == placeholdersOf(entry.key()), qPrintable(entry.key()));
            QVERIFY2(text.endsWith(u'…') == entry.key().endsWith(u'…'), qPrintable(entry.key()));
            QVERIFY2(text.count(u'\n') == entry.key().count(u'\n'), qPrintable(entry.key()));
            QVERIFY2(text.count(u'&') == entry.key().count(u'&'), qPrintable(entry.key()));
        }
    }

    void tablesSayTheSameThings()
    {
        for (const QVariantMap &table : std::as_const(m_tables))
            QCOMPARE(table.keys(), m_tables.value(u"de"_s).keys());
    }
};

PLOVENDIX_TEST(LocalizableStringsTest)
#include "LocalizableStringsTest.moc"
