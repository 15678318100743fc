#include <net/ServiceError.h>
#include <sources/online/RestPage.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(bool Subtitle::*)

namespace
{
const Locale English(u"en_US"_s);
const QUrl Base(u"https://subtitles.example/api/v1"_s);
const QString Order = u"https://subtitles.example/api/v1/download?file_id="_s;

QJsonObject record(const QByteArray &changes = "{}")
{
    QJsonObject attributes = QJsonDocument::fromJson(R"({"language":"pt-BR","download_count":412,"fps":23.976,
        "hearing_impaired":false,"from_trusted":true,"release":"Paper.Lighthouse.S01E02-ABC",
        "feature_details":{"feature_type":"Episode","year":2019,"title":"The Keeper","imdb_id":9000002,"season_number":1,
        "episode_number":2,"parent_imdb_id":9000001,"parent_title":"Paper Lighthouse"},
        "files":[{"file_id":9200001,"cd_number":1,"file_name":"Paper.Lighthouse.S01E02.WEB"}],"moviehash_match":true})")
                                 .object();
    const QJsonObject changed = QJsonDocument::fromJson(changes).object();
    for (auto it = changed.begin(); it != changed.end(); ++it)
        attributes[it.key()] = it.value();
    return {{u"id"_s, u"1"_s}, {u"attributes"_s, attributes}};
}

std::optional<QList<SubtitlePtr>> filesOf(const QByteArray &changes)
{
    return RestPage::record(record(changes), Base, English);
}

SubtitlePtr only(const QByteArray &changes = "{}")
{
    return filesOf(changes).value_or(QList<SubtitlePtr>()).value(0);
}

const QByteArray Good = R"({"attributes":{"language":"en","files":[{"file_id":1,"file_name":"a"}]}})";

Result<RestPage> read(const QByteArray &json)
{
    return RestPage::read(json, Base, English);
}
} // namespace

class RestPageTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox; // its bundle has the language codes

private Q_SLOTS:
    void envelopeIsRead()
    {
        const auto page =
            read(R"({"total_pages":31,"total_count":1502,"per_page":50,"page":2,"data":[)" + Good + "]}");
        QVERIFY(page);
        QCOMPARE(page->totalPages, 31);
        QCOMPARE(page->totalCount, 1502);
        QCOMPARE(page->page, 2);
        QCOMPARE(page->subtitles.size(), 1);
    }

    void nothingFoundIsNoError()
    {
        const auto page = read(R"({"total_pages":0,"total_count":0,"per_page":50,"page":1,"data":[]})");
        QVERIFY(page);
        QCOMPARE(page->records, 0);
    }

    void oneBadRecordCostsNothing()
    {
        const auto page = read(R"({"data":[42,null,)" + Good + R"(,"x",[],{}]})");
        QVERIFY(page);
        QCOMPARE(page->subtitles.size(), 1);
    }

    void nothingReadableIsNonsense_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"", "null", "[]", "42", "\"x\"", "{}", R"({"data":{}})", R"({"data":null})",
                                 R"({"data":[1,2]})", R"({"data":[{}]})", R"({"data":[{"attributes":[]}]})",
                                 R"({"data":[{"attributes":{"files":{}}}]})", "<html></html>", R"({"data":[)",
                                 "\xFF\xFE{", R"({"data":[]}garbage)"})
            QTest::newRow(json[0] == '\0' ? "(empty)" : json) << QByteArray(json);
        QTest::newRow("deep") << QByteArray(100'000, '[');
        QTest::newRow("deep objects") << QByteArray("{\"data\":").repeated(20'000);
    }
    void nothingReadableIsNonsense()
    {
        QFETCH(const QByteArray, json);
        const auto page = read(json);
        QVERIFY(!page);
        QCOMPARE(kindOf(page.error()), ServiceFailure::BadAnswer);
    }

    void brokenBytesInATextAreForgiven()
    {
        QByteArray json = R"({"data":[)" + Good + "]}";
        json.replace("\"a\"", "\"a\xFF\xC0z\"");
        const auto page = read(json);
        QVERIFY(page);
        QCOMPARE(page->subtitles.constFirst()->subFileName, u"az"_s);
    }

    void byteOrderMarkIsForgiven() { QVERIFY(read("\xEF\xBB\xBF{\"data\":[]}")); }

    void samePageHasTheSameFingerprint()
    {
        const auto first = read(R"({"page":1,"data":[)" + Good + "]}");
        const auto again = read(R"({"page":2,"data":[)" + Good + "]}");
        const auto other = read(R"({"page":2,"data":[)" + Good + "," + Good + "]}");
        QCOMPARE(first->fingerprint, again->fingerprint);
        QVERIFY(first->fingerprint != other->fingerprint);
    }

    void everythingKnownIsRead()
    {
        const SubtitlePtr subtitle = only();
        QVERIFY(subtitle);
        QCOMPARE(subtitle->subFileName, u"Paper.Lighthouse.S01E02.WEB"_s);
        QCOMPARE(subtitle->subLanguageID, u"pob"_s);
        QCOMPARE(subtitle->languageName, u"Portuguese (Brazil)"_s);
        QCOMPARE(subtitle->subFormat, u"srt"_s);
        QCOMPARE(subtitle->imdbID, u"tt9000002"_s);
        QCOMPARE(subtitle->fileID, Order + u"9200001"_s);
        QCOMPARE(subtitle->service, RestPage::service());
        QCOMPARE(subtitle->title, u"Paper Lighthouse"_s);
        QCOMPARE(subtitle->season, 1);
        QCOMPARE(subtitle->episode, 2);
        QCOMPARE(subtitle->year, 2019);
        QCOMPARE(subtitle->framesPerSecond, 23.976);
        QCOMPARE(subtitle->downloads, 412);
        QVERIFY(subtitle->matchesHash);
        QVERIFY(subtitle->trusted);
    }

    void anyMemberMayBeMissing_data()
    {
        QTest::addColumn<QByteArray>("value");
        for (const char *value : {"null", "[]", "{}", "true", "-5", "1e300", "\"\"", "\"text\"", "[[[]]]"})
            QTest::newRow(value) << QByteArray(value);
    }
    void anyMemberMayBeMissing()
    {
        QFETCH(const QByteArray, value);
        const QStringList keys = record()[u"attributes"_s].toObject().keys();
        for (const QString &key : keys) {
            if (key == u"files"_s)
                continue;
            const SubtitlePtr subtitle = only("{\"" + key.toLatin1() + "\":" + value + "}");
            QVERIFY2(subtitle, qPrintable(key));
            QCOMPARE(subtitle->fileID, Order + u"9200001"_s);
            QVERIFY(!subtitle->subFileName.isEmpty());
            QVERIFY(!subtitle->detailString().contains(u"-5"_s));
        }
    }

    void unknownIsNotZero()
    {
        QVERIFY(!only(R"({"fps":0.0})")->framesPerSecond);
        QVERIFY(!only(R"({"download_count":null})")->downloads);
        QVERIFY(!only(R"({"feature_details":{"year":0,"imdb_id":0}})")->year);
        QVERIFY(!only(R"({"feature_details":{"year":0,"imdb_id":0}})")->imdbID);
    }

    void idsAndCountsMayBeText()
    {
        const SubtitlePtr subtitle = only(
            R"({"files":[{"file_id":"77","file_name":5}],"download_count":"12","feature_details":{"imdb_id":"0123"}})");
        QCOMPARE(subtitle->fileID, Order + u"77"_s);
        QCOMPARE(subtitle->downloads, 12);
        QCOMPARE(subtitle->imdbID, u"tt0000123"_s);
        QCOMPARE(subtitle->subFileName, u"5"_s);
    }

    void bigNumbersSurvive()
    {
        QCOMPARE(only(R"({"files":[{"file_id":3000000000}]})")->fileID, Order + u"3000000000"_s);
        QCOMPARE(only(R"({"download_count":3000000000})")->downloads, 3'000'000'000);
    }

    void showStandsInForTheEpisodesId()
    {
        const QByteArray feature =
            R"({"feature_details":{"feature_type":"Episode","imdb_id":null,"parent_imdb_id":9000001}})";
        QCOMPARE(only(feature)->imdbID, u"tt9000001"_s);
    }

    void eachFileIsARow()
    {
        const auto read = filesOf(
            R"({"files":[{"file_id":1,"file_name":"CD1"},{"file_id":2,"file_name":"CD2"},{"file_id":0},"x",null]})");
        QCOMPARE(read->size(), 2);
        QCOMPARE(read->at(1)->subFileName, u"CD2"_s);
    }

    void recordWithoutFilesIsReadableAndEmpty() { QVERIFY(filesOf(R"({"files":[]})")->isEmpty()); }

    void everyMarkIsRead_data()
    {
        QTest::addColumn<bool Subtitle::*>("mark");
        QTest::newRow("ai_translated") << &Subtitle::machineTranslated;
        QTest::newRow("machine_translated") << &Subtitle::machineTranslated;
        QTest::newRow("foreign_parts_only") << &Subtitle::foreignPartsOnly;
        QTest::newRow("hearing_impaired") << &Subtitle::hearingImpaired;
        QTest::newRow("from_trusted") << &Subtitle::trusted;
        QTest::newRow("moviehash_match") << &Subtitle::matchesHash;
    }
    void everyMarkIsRead()
    {
        QFETCH(bool Subtitle::*, mark);
        const QByteArray key = QTest::currentDataTag();
        QVERIFY((*only("{\"" + key + "\":true}")).*mark);
        QVERIFY(!((*only("{\"" + key + "\":false}")).*mark));
    }

    void namesBecomeOneHarmlessLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::newRow("line break") << u"Two\nLines\r\n"_s << u"Two Lines"_s;
        QTest::newRow("direction") << u"abc\u202Etxt.exe"_s << u"abctxt.exe"_s;
        QTest::newRow("control") << u"a\u0007b\u001bc"_s << u"a b c"_s;
        QTest::newRow("long") << QString(300, u'n') << QString(200, u'n');
        QTest::newRow("path stays text") << u"../../etc"_s << u"../../etc"_s;
        QTest::newRow("markup stays text") << u"<b>x</b>"_s << u"<b>x</b>"_s;
        QTest::newRow("half a pair") << QString(199, u'n') + u"🎬"_s << QString(199, u'n');
    }
    void namesBecomeOneHarmlessLine()
    {
        QFETCH(const QString, name);
        QTEST(plainLine(name, 200), "line");
    }

    void namelessFilesTakeTheReleasesName()
    {
        QCOMPARE(only(R"({"files":[{"file_id":1,"file_name":"\n"}]})")->subFileName,
                 u"Paper.Lighthouse.S01E02-ABC"_s);
        QCOMPARE(only(R"({"files":[{"file_id":1}],"release":null,"feature_details":null})")->subFileName,
                 u"1"_s);
    }
};

PLOVENDIX_TEST(RestPageTest)
#include "RestPageTest.moc"
