#include <sources/online/RestRecord.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

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

SubtitlePtr only(const QByteArray &changes = "{}")
{
    const RestRecord read = RestRecord::read(record(changes), Base, English);
    return read.subtitles.size() == 1 ? read.subtitles.constFirst() : nullptr;
}
} // namespace

class RestRecordTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox; // its bundle has the language codes

private Q_SLOTS:
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
        QCOMPARE(subtitle->service, RestRecord::service());
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

    void everyMarkIsShown()
    {
        QVERIFY(only(R"({"ai_translated":true})")->machineTranslated);
        QVERIFY(only(R"({"machine_translated":true})")->machineTranslated);
        QVERIFY(only(R"({"foreign_parts_only":true})")->foreignPartsOnly);
        QVERIFY(only(R"({"hearing_impaired":true})")->hearingImpaired);
    }

    void eachFileIsARow()
    {
        const RestRecord read = RestRecord::read(
            record(
                R"({"files":[{"file_id":1,"file_name":"CD1"},{"file_id":2,"file_name":"CD2"},{"file_id":0},"x",null]})"),
            Base, English);
        QCOMPARE(read.subtitles.size(), 2);
        QCOMPARE(read.subtitles[1]->subFileName, u"CD2"_s);
    }

    void recordWithoutFilesIsReadableAndEmpty()
    {
        const RestRecord read = RestRecord::read(record(R"({"files":[]})"), Base, English);
        QVERIFY(read.isReadable);
        QVERIFY(read.subtitles.isEmpty());
    }

    void otherThingsAreNoRecords_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"42", "\"x\"", "null", "[]", "{}", R"({"attributes":[]})",
                                 R"({"attributes":{}})", R"({"attributes":{"files":{}}})"})
            QTest::newRow(json) << QByteArray(json);
    }
    void otherThingsAreNoRecords()
    {
        QFETCH(const QByteArray, json);
        const QJsonValue value = QJsonDocument::fromJson("[" + json + "]").array()[0];
        QVERIFY(!RestRecord::read(value, Base, English).isReadable);
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

PLOVENDIX_TEST(RestRecordTest)
#include "RestRecordTest.moc"
