#include "SubtitleStandIn.h"

#include "Deformation.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
QLatin1StringView endpointOf(const ReceivedRequest &request)
{
    const std::pair<QByteArray, QLatin1StringView> endpoints[] = {
        {"GET /api/v1/subtitles", "search"_L1},     {"POST /api/v1/login", "login"_L1},
        {"DELETE /api/v1/logout", "logout"_L1},     {"GET /api/v1/infos/user", "user"_L1},
        {"POST /api/v1/download", "download"_L1},   {"GET /api/v1/infos/languages", "languages"_L1},
        {"GET /api/v1/infos/formats", "formats"_L1}};
    for (const auto &[line, name] : endpoints) {
        if (request.method + ' ' + request.path() == line)
            return name;
    }
    return {};
}

/// Lacks a language that the service once had ("ab"), and has a new one ("gu").
QByteArray languageList()
{
    QByteArrayList entries;
    for (const QByteArray &code :
         QByteArray(
             "ar bg ca cs da de el en es et fi fr gu he hr hu it ja ko nl no pl pt-PT pt-BR ro ru sv tr "
             "uk zh-CN zh-TW")
             .split(' '))
        entries += R"({"language_code":")" + code + R"(","language_name":"A language"})";
    return R"({"data":[)" + entries.join(',') + "]}";
}
} // namespace

SubtitleStandIn::SubtitleStandIn(Behaviours &behaviours, const StandInTime &time)
    : m_behaviours(behaviours),
      m_time(time),
      m_search(behaviours),
      m_login(behaviours, time),
      m_links(behaviours)
{
}

ServedAnswer SubtitleStandIn::answer(const ReceivedRequest &request)
{
    const QLatin1StringView endpoint = endpointOf(request);
    const bool admitted = m_rate.admit(m_time.milliseconds());
    ServedAnswer answer;
    if (const auto refused =
            admitted ? tooFast() : jsonAnswer(429, R"({"message":"API rate limit exceeded"})"))
        answer = *refused;
    else if (const auto turnedAway = gate(request))
        answer = *turnedAway;
    else
        answer = deformed(route(request, endpoint), request, m_behaviours, endpoint);
    if (!admitted)
        answer.setHeader("Retry-After", "1");
    answer.setHeader("RateLimit-Limit", "5");
    answer.setHeader("RateLimit-Remaining", QByteArray::number(m_rate.left(m_time.milliseconds())));
    answer.setHeader("RateLimit-Reset", "1");
    return answer;
}

std::optional<ServedAnswer> SubtitleStandIn::tooFast()
{
    ServedAnswer answer = jsonAnswer(429, R"({"message":"Throttle limit reached. Retry later."})");
    const auto has = [this](QLatin1StringView name) { return m_behaviours.has(name); };
    if (has("too-fast"_L1) || m_behaviours.takeOnce("too-fast-once"_L1, "search"_L1)) {
        answer.setHeader("Retry-After", "1");
        return answer;
    }
    if (has("too-fast-hour"_L1)) {
        answer.setHeader("Retry-After", "3600");
        return answer;
    }
    if (has("too-fast-date"_L1)) {
        const QDateTime until = m_time.date().addSecs(10);
        const QString text = QLocale::c().toString(until, u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
        answer.setHeader("Retry-After", text.toLatin1());
        return answer;
    }
    if (has("too-fast-silent"_L1))
        return answer;
    return std::nullopt;
}

std::optional<ServedAnswer> SubtitleStandIn::gate(const ReceivedRequest &request)
{
    if (request.header("Api-Key") != ApiKey.toLatin1() || m_behaviours.has("unknown-key"_L1))
        return jsonAnswer(403, R"({"message":"You cannot consume this service"})");
    static const QRegularExpression agent(u" v\\d"_s);
    if (!QString::fromLatin1(request.header("User-Agent")).contains(agent))
        return pageAnswer(403, "403 Forbidden");
    if (request.port == m_addresses.vipPort && SubtitleLogin::tokenOf(request).isEmpty())
        return jsonAnswer(403, R"({"message":"VIP only"})");
    return std::nullopt;
}

ServedAnswer SubtitleStandIn::route(const ReceivedRequest &request, QLatin1StringView endpoint)
{
    if (endpoint == "login"_L1)
        return m_login.login(request, m_addresses.vipHost);
    if (endpoint == "logout"_L1)
        return m_login.logout(request);
    if (const auto refused = m_login.refusal(request))
        return *refused;
    if (endpoint == "search"_L1)
        return m_search.answer(request, m_addresses.abroad);
    if (endpoint == "user"_L1)
        return user(request);
    if (endpoint == "download"_L1)
        return download(request);
    if (endpoint == "languages"_L1)
        return jsonAnswer(200, languageList());
    if (endpoint == "formats"_L1)
        return jsonAnswer(200, R"({"data":{"output_formats":["srt","sub","mpl","webvtt","dfxp","txt"]}})");
    return jsonAnswer(404, R"({"message":"Not found"})");
}

QByteArray SubtitleStandIn::resetTime() const
{
    const QDateTime now = m_time.date();
    QDateTime reset(now.date().addDays(1), QTime(0, 0), Qt::UTC);
    if (m_behaviours.has("quota-reset-past"_L1))
        reset = now.addDays(-2);
    if (m_behaviours.has("quota-reset-soon"_L1))
        reset = now.addSecs(120);
    return reset.toString(Qt::ISODateWithMs).toLatin1();
}

ServedAnswer SubtitleStandIn::user(const ReceivedRequest &request)
{
    const QByteArray token = SubtitleLogin::tokenOf(request);
    if (token.isEmpty())
        return jsonAnswer(401, R"({"message":"Unauthorized","status":401})");
    return jsonAnswer(200, R"({"data":{"allowed_downloads":)" + QByteArray::number(m_quota.allowed(token)) +
                               R"(,"level":"Reader","user_id":1,"vip":false,"downloads_count":)" +
                               QByteArray::number(m_quota.used(token)) + R"(,"remaining_downloads":)" +
                               QByteArray::number(m_quota.remaining(token)) + R"(,"username":"reader"}})");
}

ServedAnswer SubtitleStandIn::download(const ReceivedRequest &request)
{
    const QJsonObject asked = QJsonDocument::fromJson(request.body).object();
    const qint64 fileId = asked[u"file_id"_s].toInteger();
    if (fileId <= 0 || m_behaviours.has("invalid-file"_L1))
        return jsonAnswer(406, R"({"message":"Invalid file_id","status":406})");
    if (m_behaviours.has("invalid-file-counted"_L1))
        return jsonAnswer(406, R"({"message":"Invalid file_id","status":406,"requests":1,"remaining":4})");
    const QByteArray token = SubtitleLogin::tokenOf(request);
    if (token.isEmpty() && m_behaviours.has("account-wanted"_L1))
        return jsonAnswer(401, R"({"message":"Unauthorized","status":401})");
    const int left = m_behaviours.has("quota-used"_L1) ? -1 : m_quota.take(token);
    const QByteArray common = R"("requests":)" + QByteArray::number(m_quota.allowed(token) - left) +
                              R"(,"remaining":)" + QByteArray::number(left) +
                              R"(,"reset_time":"3 hours","reset_time_utc":")" + resetTime() + R"(")";
    if (left < 0)
        return jsonAnswer(406, R"({"message":"You have downloaded your allowed 20 subtitles for 24h.",)" +
                                   common + "}");
    QByteArray link = m_addresses.links.toEncoded() + m_links.pathFor(fileId);
    if (m_behaviours.has("link-clear"_L1))
        link = "http://www.opensubtitles.com/download/abc/subfile/film.srt";
    if (m_behaviours.has("link-foreign"_L1))
        link = "https://files.elsewhere.example/download/abc/subfile/film.srt";
    const QByteArray name = m_behaviours.has("link-name-path"_L1) ? "../../../home/.profile.srt" : "film.srt";
    const QByteArray linkMember =
        m_behaviours.has("link-missing"_L1) ? QByteArray() : R"("link":")" + link + R"(",)";
    return jsonAnswer(200, "{" + linkMember + R"("file_name":")" + name +
                               R"(","message":"Your quota will be renewed",)" + common + "}");
}

ServedAnswer SubtitleStandIn::link(const ReceivedRequest &request)
{
    return deformed(m_links.answer(request), request, m_behaviours, "link"_L1);
}
