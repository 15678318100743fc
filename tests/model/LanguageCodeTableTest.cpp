#include <base/Bundle.h>
#include <base/Locale.h>
#include <base/PropertyList.h>
#include <model/LanguageCodeConversion.h>
#include <model/LocaleUtilities.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// ISO 639-1 and the three-letter codes of the subtitle services.
const QString ServiceCodes =
    QStringLiteral("aa:aar ab:abk ae:ave af:afr ak:aka am:amh an:arg ar:ara as:asm av:ava ay:aym az:aze "
                   "ba:bak be:bel bg:bul bh:bih bi:bis bm:bam bn:ben bo:tib br:bre bs:bos ca:cat ce:che "
                   "ch:cha co:cos cr:cre cs:cze cu:chu cv:chv cy:wel da:dan de:ger dv:div dz:dzo ee:ewe "
                   "el:ell en:eng eo:epo es:spa et:est eu:baq fa:per ff:ful fi:fin fj:fij fo:fao fr:fre "
                   "fy:fry ga:gle gd:gla gl:glg gn:grn gu:guj gv:glv ha:hau he:heb hi:hin ho:hmo hr:hrv "
                   "ht:hat hu:hun hy:arm hz:her ia:ina id:ind ie:ile ig:ibo ii:iii ik:ipk io:ido is:ice "
                   "it:ita iu:iku ja:jpn jv:jav ka:geo kg:kon ki:kik kj:kua kk:kaz kl:kal km:khm kn:kan "
                   "ko:kor kr:kau ks:kas ku:kur kv:kom kw:cor ky:kir la:lat lb:ltz lg:lug li:lim ln:lin "
                   "lo:lao lt:lit lu:lub lv:lav mg:mlg mh:mah mi:mao mk:mac ml:mal mn:mon mr:mar ms:may "
                   "mt:mlt my:bur na:nau nb:nob nd:nde ne:nep ng:ndo nl:dut nn:nno no:nor nr:nbl nv:nav "
                   "ny:nya oc:oci oj:oji om:orm or:ori os:oss pa:pan pi:pli pl:pol ps:pus pt:por qu:que "
                   "rm:roh rn:run ro:rum ru:rus rw:kin sa:san sc:srd sd:snd se:sme sg:sag si:sin sk:slo "
                   "sl:slv sm:smo sn:sna so:som sq:alb sr:scc ss:ssw st:sot su:sun sv:swe sw:swa ta:tam "
                   "te:tel tg:tgk th:tha ti:tir tk:tuk tl:tgl tn:tsn to:ton tr:tur ts:tso tt:tat tw:twi "
                   "ty:tah ug:uig uk:ukr ur:urd uz:uzb ve:ven vi:vie vo:vol wa:wln wo:wol xh:xho yi:yid "
                   "yo:yor za:zha zh:chi zu:zul");

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

    void everyTwoLetterCodeConverts_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("expected");
        const QStringList pairs = (ServiceCodes + u' ' + PrivateCodes).split(u' ');
        QCOMPARE(pairs.size(), 184 + 14);
        for (const QString &pair : pairs)
            QTest::newRow(qPrintable(pair)) << pair.section(u':', 0, 0) << pair.section(u':', 1, 1);
    }
    void everyTwoLetterCodeConverts()
    {
        QFETCH(QString, code);
        QFETCH(QString, expected);
        QCOMPARE(iso639_2LanguageCode(code), expected);
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
