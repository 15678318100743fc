#include <sources/films/FilmAnswers.h>
#include <sources/films/FilmSettings.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class FilmAnswersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messagesOfTheDatabaseStartNoEscapeSequence()
    {
        HttpAnswer answer;
        answer.status = 500;
        answer.body = "{\"status_code\":11,\"status_message\":\"Internal\\u001b]0;x\\u0007\\u009b2J error\"}";
        QCOMPARE(FilmAnswers::errorOf(answer).detail, u"status 500: Internal]0;x2J error"_s);
    }

    void languagesAreTags_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("tag");
        for (const auto &[code, tag] : {std::pair(u"en"_s, u"en-US"_s),
                                        {u"de"_s, u"de"_s},
                                        {u"pb"_s, u"pt-BR"_s},
                                        {u"pt"_s, u"pt-PT"_s},
                                        {u"zh"_s, u"zh-CN"_s},
                                        {u"zt"_s, u"zh-TW"_s},
                                        {u"ea"_s, u"es-MX"_s},
                                        {u"ma"_s, u"en-US"_s},
                                        {u"DE"_s, u"de"_s},
                                        {u"deu"_s, u"en-US"_s},
                                        {u"&x"_s, u"en-US"_s},
                                        {QString(), u"en-US"_s}})
            QTest::newRow(code.isEmpty() ? "(none)" : qPrintable(code)) << code << tag;
    }
    void languagesAreTags()
    {
        QFETCH(const QString, code);
        QTEST(filmLanguage(code), "tag");
    }

    void findsAreRead()
    {
        const auto found =
            FilmAnswers::readFind(R"({"movie_results":[{"poster_path":"/a.jpg","new":[1]},5,null],
            "person_results":[{"id":1}],"tv_results":[],"tv_episode_results":[{"show_id":7}]})");
        QVERIFY(found);
        QCOMPARE(found->result.movieResults.size(), 1);
        QCOMPARE(FilmAnswers::posterPath(found->result.movieResults[0]), u"/a.jpg"_s);
        QCOMPARE(found->result.personResults.size(), 1);
        // The film is enough.
        QVERIFY(!found->showOfEpisode);
    }

    void episodeWithoutAnythingElseNamesItsShow()
    {
        const auto found = FilmAnswers::readFind(
            R"({"movie_results":[],"tv_results":[],"tv_episode_results":[{"show_id":12001}]})");
        QVERIFY(found);
        QCOMPARE(found->showOfEpisode, 12001);
    }

    void otherThingsAreNoFind_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"", "null", "[]", "{}", R"({"movie_results":[]})",
                                 R"({"movie_results":{},"tv_results":[]})", "<html>"})
            QTest::newRow(json[0] == '\0' ? "(empty)" : json) << QByteArray(json);
    }
    void otherThingsAreNoFind()
    {
        QFETCH(const QByteArray, json);
        QVERIFY(!FilmAnswers::readFind(json));
        QVERIFY(!FilmAnswers::readShow(json));
        QVERIFY(!FilmImages::read(json));
    }

    void pathsThatLeadElsewhereAreNone_data()
    {
        QTest::addColumn<QString>("path");
        for (const char *path : {"", "a.jpg", "/../../x.jpg", "//evil.example/x.jpg", "/a/b.jpg", "/a.jpg?x",
                                 "/a%2f.jpg", "https://evil.example/a.jpg", "/a b.jpg", "/a.jpg\n"})
            QTest::newRow(path[0] == '\0' ? "(empty)" : path) << QString::fromLatin1(path);
    }
    void pathsThatLeadElsewhereAreNone()
    {
        QFETCH(const QString, path);
        QCOMPARE(FilmAnswers::posterPath({QVariantMap{{u"poster"_s, path}}}), QString());
        QCOMPARE(FilmAnswers::posterPath({QVariant(path)}), QString());
    }

    void sizeFitsThePixels_data()
    {
        QTest::addColumn<int>("pixels");
        QTest::addColumn<QString>("size");
        QTest::newRow("ratio 1") << 154 << u"w154"_s;
        QTest::newRow("ratio 1.25") << 193 << u"w342"_s;
        QTest::newRow("ratio 2") << 308 << u"w342"_s;
        QTest::newRow("ratio 3") << 462 << u"w500"_s;
        QTest::newRow("more than there is") << 5000 << u"w780"_s;
    }
    void sizeFitsThePixels()
    {
        QFETCH(const int, pixels);
        QTEST(FilmImages().posterSize(pixels), "size");
    }

    void addressesHaveNoDoubledSlash()
    {
        QCOMPARE(FilmImages().address(u"w154"_s, u"/abc.jpg"_s),
                 QUrl(u"https://image.tmdb.org/t/p/w154/abc.jpg"_s));
    }

    void configurationIsRead()
    {
        const auto images = FilmImages::read(
            R"({"images":{"base_url":"http:\/\/x.example\/","secure_base_url":"https:\/\/y.example\/p\/","poster_sizes":["w30","w9","h7",5]}})");
        QVERIFY(images);
        QCOMPARE(images->base, QUrl(u"https://y.example/p/"_s));
        QCOMPARE(images->posterSize(1), u"w9"_s);
        QCOMPARE(images->posterSize(1000), u"w30"_s);
    }

    void keysGoWhereTheyAreTaken()
    {
        FilmSettings settings;
        settings.key = u"0123456789abcdef0123456789abcdef"_s;
        const HttpRequest byQuery = settings.request(u"/find/tt1"_s, {{u"language"_s, u"de"_s}});
        QVERIFY(byQuery.url.query().contains(u"api_key=0123"_s));
        QVERIFY(!settings.cacheKey(u"/find/tt1"_s, {{u"language"_s, u"de"_s}}).contains(u"0123"_s));
        settings.key = u"eyJhbGciOi.J9.x"_s;
        const HttpRequest byHeader = settings.request(u"/find/tt1"_s, {});
        QVERIFY(!byHeader.url.toString().contains(u"eyJ"_s));
        QVERIFY(byHeader.headers.contains(
            std::pair(QByteArray("Authorization"), QByteArray("Bearer eyJhbGciOi.J9.x"))));
    }

    void picturesMustBeWhole()
    {
        QVERIFY(isWholePicture("\xFF\xD8 data \xFF\xD9"));
        QVERIFY(!isWholePicture("\xFF\xD8 data"));
        QVERIFY(!isWholePicture("\x89PNG data"));
        QVERIFY(!isWholePicture({}));
    }

    void statusSaysTheKind_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("kind");
        const auto row = [](int status, const QByteArray &body, ServiceFailure kind) {
            QTest::addRow("%d %s", status, body.constData()) << status << body << static_cast<int>(kind);
        };
        row(401, {}, ServiceFailure::KeyRefused);
        row(403, {}, ServiceFailure::KeyRefused);
        row(404, {}, ServiceFailure::BadAnswer);
        row(407, {}, ServiceFailure::Proxy);
        row(422, {}, ServiceFailure::BadAnswer);
        row(429, {}, ServiceFailure::TooManyRequests);
        row(500, {}, ServiceFailure::Unavailable);
        row(511, {}, ServiceFailure::BadAnswer);
        row(504, {}, ServiceFailure::Unavailable);
        // The database's own answer, and pages of other servers, which say nothing of the key.
        row(404, R"({"status_code":34,"status_message":"Not found."})", ServiceFailure::NotFound);
        row(404, "<html><title>404</title></html>", ServiceFailure::BadAnswer);
        row(401, "\n<html><title>Please sign in</title></html>", ServiceFailure::BadAnswer);
        row(403, "\n<html><title>Please sign in</title></html>", ServiceFailure::BadAnswer);
    }
    void statusSaysTheKind()
    {
        QFETCH(const int, status);
        QFETCH(const QByteArray, body);
        HttpAnswer answer;
        answer.status = status;
        answer.body = body;
        QTEST(static_cast<int>(kindOf(FilmAnswers::errorOf(answer)).value()), "kind");
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(FilmAnswersTest)
#include "FilmAnswersTest.moc"
