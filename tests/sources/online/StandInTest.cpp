#include <tests/support/TestMain.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTest>

using namespace Qt::StringLiterals;

/// The double of the services is as strict as they are: what it lets pass proves something. Asked by a bare
/// client of Qt.
class StandInTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_milliseconds = 0;
        const QDateTime date(QDate(2030, 3, 4), QTime(20, 48), Qt::UTC);
        m_standIn = std::make_unique<StandIn>(
            StandInTime{[this] { return m_milliseconds; }, [date] { return date; }});
    }

    void canonicalAddressesAreAnswered_data()
    {
        QTest::addColumn<QByteArray>("query");
        for (const char *query :
             {"languages=en&query=film", "languages=en%2Cpt-br&query=paper+lighthouse+2019",
              "languages=en&moviehash=8e245d9679d31e12", "episode_number=0&query=a-b_c.d~e",
              "languages=en&page=2&query=film"})
            QTest::newRow(query) << QByteArray(query);
    }
    void canonicalAddressesAreAnswered()
    {
        QFETCH(const QByteArray, query);
        QCOMPARE(statusOf(*get("/api/v1/subtitles?" + query)), 200);
        QCOMPARE(m_standIn->complaints().filter(u"canonical"_s), QStringList());
    }

    void otherAddressesAreSentToTheCanonicalOne_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<QByteArray>("canonical");
        const auto row = [](const char *name, const char *query, const char *canonical) {
            QTest::newRow(name) << QByteArray(query) << QByteArray(canonical);
        };
        row("unsorted", "query=film&languages=en", "languages=en&query=film");
        row("capitals in a value", "languages=en&query=Film", "languages=en&query=film");
        row("capitals in a key", "languages=en&Query=film", "languages=en&query=film");
        row("capitals of a language", "languages=pt-BR&query=film", "languages=pt-br&query=film");
        row("%20", "languages=en&query=paper%20boat", "languages=en&query=paper+boat");
        row("first page", "languages=en&page=1&query=film", "languages=en&query=film");
        row("another default", "languages=en&machine_translated=exclude&query=film",
            "languages=en&query=film");
        row("nothing", "languages=&query=film", "query=film");
        row("unsorted languages", "languages=pt-br%2Cen%2Cen&query=film", "languages=en%2Cpt-br&query=film");
        row("raw comma", "languages=en,pt-br&query=film", "languages=en%2Cpt-br&query=film");
        row("tt", "imdb_id=tt123&languages=en", "imdb_id=123&languages=en");
        row("leading zeros", "imdb_id=0123&languages=en", "imdb_id=123&languages=en");
    }
    void otherAddressesAreSentToTheCanonicalOne()
    {
        QFETCH(const QByteArray, query);
        QFETCH(const QByteArray, canonical);
        const auto answer = get("/api/v1/subtitles?" + query);
        QCOMPARE(statusOf(*answer), 301);
        QCOMPARE(answer->rawHeader("Location"), "/api/v1/subtitles?" + canonical);
        QCOMPARE(answer->readAll(), QByteArray());
        QCOMPARE(answer->rawHeader("Cache-Control"), "public, max-age=86400");
        QCOMPARE(m_standIn->subtitles().redirects(), 1);
    }

    void gateIsKept_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("agent");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("said");
        const QByteArray key = SubtitleStandIn::ApiKey.toLatin1();
        const QByteArray target = "/api/v1/subtitles?query=film";
        QTest::newRow("in order") << key << QByteArray("Any v1") << target << 200 << QByteArray("{");
        QTest::newRow("no key") << QByteArray() << QByteArray("Any v1") << target << 403
                                << QByteArray("cannot consume");
        QTest::newRow("wrong key") << QByteArray("other") << QByteArray("Any v1") << target << 403
                                   << QByteArray("cannot consume");
        QTest::newRow("no version") << key << QByteArray("Any") << target << 403
                                    << QByteArray("<!DOCTYPE html>");
        QTest::newRow("short hash") << key << QByteArray("Any v1")
                                    << QByteArray("/api/v1/subtitles?moviehash=8e24") << 400 << QByteArray();
    }
    void gateIsKept()
    {
        QFETCH(const QByteArray, key);
        QFETCH(const QByteArray, agent);
        QFETCH(const QByteArray, target);
        QFETCH(const QByteArray, said);
        const auto answer = get(target, {{"Api-Key", key}, {"User-Agent", agent}});
        QTEST(statusOf(*answer), "status");
        const QByteArray body = answer->readAll();
        QVERIFY2(said.isEmpty() ? body.isEmpty() : body.contains(said), body.constData());
        QCOMPARE(answer->rawHeader("X-Reason").isEmpty(), statusOf(*answer) != 400);
    }

    void sixthRequestInASecondIsOneTooMany()
    {
        for (int turn = 0; turn < 5; ++turn) {
            const auto answer = get("/api/v1/infos/formats");
            QCOMPARE(statusOf(*answer), 200);
            QCOMPARE(answer->rawHeader("RateLimit-Limit"), "5");
            QCOMPARE(answer->rawHeader("RateLimit-Remaining"), QByteArray::number(4 - turn));
        }
        const auto sixth = get("/api/v1/infos/formats");
        QCOMPARE(statusOf(*sixth), 429);
        QCOMPARE(sixth->rawHeader("Retry-After"), "1");
        QVERIFY(!m_standIn->complaints().filter(u"6 requests in one second"_s).isEmpty());
        m_milliseconds += 1000;
        QCOMPARE(statusOf(*get("/api/v1/infos/formats")), 200);
    }

    void filmsWantTheFullId()
    {
        const Headers key{{"Authorization", "Bearer " + FilmStandIn::Token}};
        QCOMPARE(statusOf(*get("/3/find/tt9000002", key)), 200);
        const auto bare = get("/3/find/9000002", key);
        QCOMPARE(statusOf(*bare), 404);
        QVERIFY(bare->readAll().contains("\"status_code\":6"));
        QCOMPARE(statusOf(*get("/3/find/tt9000002", {{"Authorization", "Bearer other"}})), 401);
    }

private:
    using Headers = QList<std::pair<QByteArray, QByteArray>>;

    std::unique_ptr<QNetworkReply> get(const QByteArray &target, const Headers &headers = goodHeaders())
    {
        QNetworkRequest request(QUrl::fromEncoded(m_standIn->main().url().toEncoded() + target));
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        std::unique_ptr<QNetworkReply> reply(m_network.get(request));
        [&] { QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), WaitLimit); }();
        return reply;
    }
    static int statusOf(const QNetworkReply &reply)
    {
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }
    static Headers goodHeaders()
    {
        return {{"Api-Key", SubtitleStandIn::ApiKey.toLatin1()}, {"User-Agent", "Any v1.0"}};
    }

    QNetworkAccessManager m_network;
    qint64 m_milliseconds = 0;
    std::unique_ptr<StandIn> m_standIn;
};

PLOVENDIX_TEST(StandInTest)
#include "StandInTest.moc"
