#include <base/Bundle.h>
#include <base/Locale.h>
#include <base/PropertyList.h>
#include <model/LanguageCodeConversion.h>
#include <model/LocaleUtilities.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Codes of the services' own.
const QString PrivateCodes = QStringLiteral(
    "pb:pob pm:pom me:mne at:ast ma:mni sy:syr ze:zhe zt:zht ex:ext ea:spl sp:spn pr:prs sx:sat tp:tok");

/// What ISO 639-2 calls otherwise than the services do: the terminological forms and two newer codes.
const QStringList ForeignSpellings =
    u"deu fra nld ces ron slk sqi hye eus mya zho kat isl mkd mri msa fas bod cym gre srp cnr yue"_s.split(
        u' ');
} // namespace

/// The table that ships with the program.
class LanguageCodeTableTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    QVariantMap m_table;

private Q_SLOTS:
    void initTestCase()
    {
        const auto path = Bundle::main().pathForResource(u"iso639_1_to_iso639_2"_s, u"plist"_s);
        QVERIFY(path);
        const auto content = readPropertyList(*path);
        QVERIFY(content);
        m_table = content->toMap();
        reloadLanguageCodeTable();
    }

    void servicesOwnCodesConvert()
    {
        const QStringList pairs = PrivateCodes.split(u' ');
        for (const QString &pair : pairs)
            QCOMPARE(iso639_2LanguageCode(pair.section(u':', 0, 0)), pair.section(u':', 1, 1));
    }

    void twoLetterCodesHaveTheBibliographicForm()
    {
        // The services spell Greek and Serbian in their own way.
        const QHash<QString, QString> renamed = {{u"gre"_s, u"ell"_s}, {u"srp"_s, u"scc"_s}};
        int compared = 0;
        for (int number = QLocale::C + 1; number <= QLocale::LastLanguage; ++number) {
            const auto language = static_cast<QLocale::Language>(number);
            const QString two = QLocale::languageToCode(language, QLocale::ISO639Part1);
            const QString three = QLocale::languageToCode(language, QLocale::ISO639Part2B);
            if (two.isEmpty() || three.isEmpty())
                continue;
            ++compared;
            QCOMPARE(two + u':' + iso639_2LanguageCode(two), two + u':' + renamed.value(three, three));
        }
        QVERIFY2(compared > 150, qPrintable(QString::number(compared)));
    }

    void everyLanguageOfTheLocaleDataHasAnEntry()
    {
        const QStringList codes = Locale::isoLanguageCodes();
        QVERIFY(codes.size() > 500);
        QStringList missing;
        for (const QString &code : codes) {
            if (!m_table.contains(code))
                missing += code;
        }
        QCOMPARE(missing, QStringList());
    }

    void everyLanguageOfTheCatalogueHasAnEntry()
    {
        QStringList missing;
        for (const Language &language : LocaleUtilities::shared().languages()) {
            if (language.iso639_1() != u"-" && !m_table.contains(language.iso639_1()))
                missing += language.iso639_1();
        }
        QCOMPARE(missing, QStringList());
    }

    void threeLetterCodesStayThemselvesOrTakeTheServicesSpelling()
    {
        const QMap<QString, QString> renamed = {
            {u"cnr"_s, u"mne"_s}, {u"fil"_s, u"tgl"_s}, {u"yue"_s, u"zhc"_s}};
        for (auto entry = m_table.begin(); entry != m_table.end(); ++entry) {
            if (entry.key().size() == 3)
                QCOMPARE(entry->toString(), renamed.value(entry.key(), entry.key()));
        }
    }

    void withdrawnCodesMeanTheirSuccessors()
    {
        QCOMPARE(iso639_2LanguageCode(u"iw"_s), iso639_2LanguageCode(u"he"_s));
        QCOMPARE(iso639_2LanguageCode(u"in"_s), iso639_2LanguageCode(u"id"_s));
        QCOMPARE(iso639_2LanguageCode(u"ji"_s), iso639_2LanguageCode(u"yi"_s));
        QCOMPARE(iso639_2LanguageCode(u"mo"_s), iso639_2LanguageCode(u"ro"_s));
    }

    void everyValueIsThreeSmallLettersInTheServicesSpelling()
    {
        const QRegularExpression threeLetters(u"^[a-z]{3}$"_s);
        for (auto entry = m_table.begin(); entry != m_table.end(); ++entry) {
            const QString value = entry->toString();
            QVERIFY2(threeLetters.match(value).hasMatch(), qPrintable(entry.key() + u" "_s + value));
            QVERIFY2(!ForeignSpellings.contains(value), qPrintable(entry.key() + u" "_s + value));
        }
    }

    void localesConvertThroughTheShippedTable()
    {
        QCOMPARE(iso639_2LanguageCode(Locale(u"de_DE.UTF-8"_s)), u"ger"_s);
        QCOMPARE(iso639_2LanguageCode(Locale(u"pt_BR"_s)), u"por"_s);
        QCOMPARE(iso639_2LanguageCode(Locale(u"C"_s)), std::nullopt);
    }
};

PLOVENDIX_TEST(LanguageCodeTableTest)
#include "LanguageCodeTableTest.moc"
