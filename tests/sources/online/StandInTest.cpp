#include <tests/support/TestMain.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>

#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Answer
{
    int status = 0;
    QByteArray head;
    QByteArray body;

    QByteArray header(const QByteArray &name) const
    {
        for (const QByteArray &line : head.split('\n')) {
            if (line.toLower().startsWith(name.toLower() + ':'))
                return line.mid(name.size() + 1).trimmed();
        }
        return {};
    }
};
} // namespace

/// The double of the services is as strict as they are: what it lets pass proves something. Asked over a bare
/// socket, as no client of ours would.
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
        QCOMPARE(get("/api/v1/subtitles?" + query).status, 200);
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
        const Answer answer = get("/api/v1/subtitles?" + query);
        QCOMPARE(answer.status, 301);
        QCOMPARE(answer.header("Location"), "/api/v1/subtitles?" + canonical);
        QCOMPARE(answer.body, QByteArray());
        QCOMPARE(answer.header("Cache-Control"), "public, max-age=86400");
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
        const Answer answer = get(target, "Api-Key: " + key + "\r\nUser-Agent: " + agent + "\r\n");
        QTEST(answer.status, "status");
        QVERIFY2(answer.body.startsWith(said) || (!said.isEmpty() && answer.body.contains(said)),
                 answer.body.constData());
        QCOMPARE(answer.header("X-Reason").isEmpty(), answer.status != 400);
    }

    void sixthRequestInASecondIsOneTooMany()
    {
        for (int turn = 0; turn < 5; ++turn) {
            const Answer answer = get("/api/v1/infos/formats");
            QCOMPARE(answer.status, 200);
            QCOMPARE(answer.header("RateLimit-Limit"), "5");
            QCOMPARE(answer.header("RateLimit-Remaining"), QByteArray::number(4 - turn));
        }
        const Answer sixth = get("/api/v1/infos/formats");
        QCOMPARE(sixth.status, 429);
        QCOMPARE(sixth.header("Retry-After"), "1");
        QVERIFY(!m_standIn->complaints().filter(u"6 requests in one second"_s).isEmpty());
        m_milliseconds += 1000;
        QCOMPARE(get("/api/v1/infos/formats").status, 200);
    }

    void filmsWantTheFullId()
    {
        const QByteArray key = "Authorization: Bearer " + FilmStandIn::Token + "\r\n";
        QCOMPARE(get("/3/find/tt9000002", key).status, 200);
        const Answer bare = get("/3/find/9000002", key);
        QCOMPARE(bare.status, 404);
        QVERIFY(bare.body.contains("\"status_code\":6"));
        QCOMPARE(get("/3/find/tt9000002", "Authorization: Bearer other\r\n").status, 401);
    }

private:
    Answer get(const QByteArray &target, const QByteArray &headers = goodHeaders())
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_standIn->main().port());
        socket.write("GET " + target + " HTTP/1.1\r\nHost: here\r\n" + headers + "\r\n");
        QByteArray received;
        const bool came = QTest::qWaitFor(
            [&] {
                received += socket.readAll();
                const qsizetype end = received.indexOf("\r\n\r\n");
                return end >= 0 && received.size() - end - 4 >= lengthIn(received.left(end));
            },
            WaitLimit);
        if (!came)
            return {};
        const qsizetype end = received.indexOf("\r\n\r\n");
        return {received.split(' ').value(1).toInt(), received.left(end), received.mid(end + 4)};
    }

    static qsizetype lengthIn(const QByteArray &head)
    {
        return Answer{0, head, {}}.header("Content-Length").toLongLong();
    }
    static QByteArray goodHeaders()
    {
        return "Api-Key: " + SubtitleStandIn::ApiKey.toLatin1() + "\r\nUser-Agent: Any v1.0\r\n";
    }

    qint64 m_milliseconds = 0;
    std::unique_ptr<StandIn> m_standIn;
};

PLOVENDIX_TEST(StandInTest)
#include "StandInTest.moc"
