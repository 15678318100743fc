#include <model/LocaleUtilities.h>
#include <tests/support/TestMain.h>

#include <QMetaProperty>
#include <QTest>

#include <type_traits>

using namespace Qt::StringLiterals;

class LanguageTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languageIsMadeOnlyWithBothFields()
    {
        QVERIFY(!std::is_default_constructible_v<Language>);
        QVERIFY(!(std::is_constructible_v<Language, QString>));
        QVERIFY((std::is_constructible_v<LocaleUtilities::Language, QString, QString>));
    }

    void languagesAreEqualByCode()
    {
        const Language english(u"English"_s, u"en"_s);
        QVERIFY(english == Language(u"Englisch"_s, u"en"_s));
        QVERIFY(english != Language(u"English"_s, u"EN"_s));
        QVERIFY(english != Language(u"English"_s, u"eng"_s));
    }

    void languageDiffersFromAnyOtherValue()
    {
        const QVariant english = QVariant::fromValue(Language(u"English"_s, u"en"_s));
        QVERIFY(english == QVariant::fromValue(Language(u"Englisch"_s, u"en"_s)));
        QVERIFY(english != QVariant(u"en"_s));
        QVERIFY(english != QVariant());
    }

    void bindingsReadTheFieldsAndCannotWriteThem()
    {
        const Language english(u"English"_s, u"en"_s);
        const QMetaObject &meta = Language::staticMetaObject;
        const QMetaProperty name = meta.property(meta.indexOfProperty("name"));
        const QMetaProperty code = meta.property(meta.indexOfProperty("iso639_1"));
        QCOMPARE(name.readOnGadget(&english), QVariant(u"English"_s));
        QCOMPARE(code.readOnGadget(&english), QVariant(u"en"_s));
        QVERIFY(!name.isWritable());
        QVERIFY(!code.isWritable());
    }
};

PLOVENDIX_TEST(LanguageTest)
#include "LanguageTest.moc"
