#include "FilmStandIn.h"

#include "Deformation.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>

using namespace Qt::StringLiterals;

namespace
{
QByteArray results(const QByteArray &films, const QByteArray &people, const QByteArray &shows,
                   const QByteArray &episodes)
{
    return R"({"movie_results":[)" + films + R"(],"person_results":[)" + people + R"(],"tv_results":[)" +
           shows + R"(],"tv_episode_results":[)" + episodes + R"(],"tv_season_results":[]})";
}

QByteArray quotedOrNull(const QByteArray &text)
{
    return text.isEmpty() ? QByteArray("null") : '"' + text + '"';
}

QByteArray film(int id, const QByteArray &poster, const QByteArray &overview)
{
    return R"({"id":)" + QByteArray::number(id) + R"(,"title":"Paper Lighthouse","overview":")" + overview +
           R"(","release_date":"2019-05-03","poster_path":)" + quotedOrNull(poster) +
           R"(,"backdrop_path":null,"media_type":"movie","something_new":[{}]})";
}

QByteArray series(const QByteArray &overview)
{
    return R"({"id":12001,"name":"Paper Lighthouse","overview":")" + overview +
           R"(","first_air_date":"","poster_path":"/show.jpg","media_type":"tv"})";
}

ServedAnswer withTag(const ReceivedRequest &request, ServedAnswer answer, bool lasting)
{
    static int change = 0;
    QByteArray tag = QCryptographicHash::hash(answer.body, QCryptographicHash::Md5).toHex().left(12);
    if (!lasting)
        tag += QByteArray::number(++change);
    tag = "W/\"" + tag + "\"";
    if (request.header("If-None-Match") == tag)
        answer = {304, {}, {}};
    answer.setHeader("ETag", tag);
    return answer;
}
} // namespace

std::optional<ServedAnswer> FilmStandIn::gate(const ReceivedRequest &request)
{
    const QUrlQuery query(QString::fromLatin1(request.query()));
    const bool byKey = query.queryItemValue(u"api_key"_s).toLatin1() == Key;
    const bool byToken = request.header("Authorization") == "Bearer " + Token;
    if (m_behaviours.has("film-key-refused"_L1) || (!byKey && !byToken))
        return jsonAnswer(
            401, R"({"status_code":7,"status_message":"Invalid API key: You must be granted a valid key.",)"
                 R"("success":false})");
    if (m_behaviours.takeOnce("film-too-fast"_L1, "search"_L1))
        return jsonAnswer(
            429, R"({"status_code":25,"status_message":"Your request count is over the allowed limit."})");
    if (m_behaviours.has("film-not-found"_L1))
        return jsonAnswer(404, R"({"status_code":34,"status_message":"The resource could not be found."})");
    return std::nullopt;
}

ServedAnswer FilmStandIn::answer(const ReceivedRequest &request)
{
    if (const auto refused = gate(request))
        return *refused;
    const QByteArray path = request.path();
    if (path.startsWith("/3/find/"))
        return deformed(find(request), request, m_behaviours, "find"_L1);
    if (path.startsWith("/3/tv/"))
        return deformed(show(request), request, m_behaviours, "show"_L1);
    if (path == "/3/configuration")
        return deformed(configuration(), request, m_behaviours, "configuration"_L1);
    return jsonAnswer(404, R"({"status_code":34,"status_message":"The resource could not be found."})");
}

ServedAnswer FilmStandIn::find(const ReceivedRequest &request) const
{
    const QByteArray id = request.path().mid(8);
    if (!id.startsWith("tt") && !id.startsWith("nm"))
        return jsonAnswer(404, R"({"status_code":6,"status_message":"Invalid id."})");
    QByteArray body = results({}, {}, {}, {});
    if (id == "tt9000002")
        body = results(film(11001, "/film.jpg", "A keeper folds his lamp."), {}, {}, {});
    if (id == "tt9000004")
        body = results(film(11002, {}, "A keeper folds his lamp."), {}, {}, {});
    if (id == "tt9000001")
        body = results({}, {}, series("A keeper folds his lamp."), {});
    if (id == "nm9000003")
        body = results({}, R"({"id":14001,"name":"A Person","media_type":"person"})", {}, {});
    if (id == "tt9000011")
        body = results(
            {}, {}, {},
            R"({"id":13001,"show_id":12001,"season_number":1,"episode_number":1,"name":"Pilot","overview":"",)"
            R"("still_path":"/still.jpg","media_type":"tv_episode"})");
    ServedAnswer answer = jsonAnswer(200, body);
    answer.setHeader("Cache-Control",
                     m_behaviours.has("film-no-store"_L1) ? "no-store" : "public, max-age=3600");
    return withTag(request, answer, true);
}

ServedAnswer FilmStandIn::show(const ReceivedRequest &request) const
{
    if (request.path() != "/3/tv/12001")
        return jsonAnswer(404, R"({"status_code":34,"status_message":"The resource could not be found."})");
    ServedAnswer answer = jsonAnswer(200, series("A keeper folds his lamp."));
    answer.setHeader("Cache-Control", "public, max-age=3600");
    return withTag(request, answer, true);
}

ServedAnswer FilmStandIn::configuration() const
{
    return jsonAnswer(200,
                      R"({"images":{"base_url":"http://elsewhere.example/t/p/","secure_base_url":")" +
                          m_imageBase.toEncoded() +
                          R"(/t/p/","poster_sizes":["w92","w154","w185","w342","w500","w780","original"]},)"
                          R"("change_keys":[]})");
}

QByteArray FilmStandIn::poster(int width)
{
    QImage image(width, width * 3 / 2, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, (x * y) % 256));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 90);
    return bytes;
}

ServedAnswer FilmStandIn::image(const ReceivedRequest &request)
{
    const QByteArrayList parts = request.path().split('/');
    const QByteArray size = parts.value(3);
    if (!size.startsWith('w') || parts.size() != 5)
        return pageAnswer(404, "Not found");
    ServedAnswer answer{200, {{"Content-Type", "image/jpeg"}}, poster(size.mid(1).toInt())};
    if (m_behaviours.has("poster-html"_L1))
        answer = pageAnswer(200, "No picture");
    if (m_behaviours.has("poster-cut"_L1))
        answer.body.truncate(answer.body.size() / 2);
    if (m_behaviours.has("poster-huge"_L1)) {
        QBuffer buffer(&answer.body);
        buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
        QImage(20000, 20, QImage::Format_Mono).save(&buffer, "PNG");
    }
    answer = withTag(request, answer, !m_behaviours.has("poster-changes"_L1));
    return deformed(answer, request, m_behaviours, "image"_L1);
}
