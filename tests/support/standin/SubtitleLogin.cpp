#include "SubtitleLogin.h"

#include "Deformation.h"
#include "SubtitleStandIn.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 TokenSeconds = 23 * 3600;
constexpr qint64 ShortTokenSeconds = 300;

QByteArray part(const QByteArray &json)
{
    return json.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}
} // namespace

QByteArray SubtitleLogin::tokenOf(const ReceivedRequest &request)
{
    const QByteArray header = request.header("Authorization");
    return header.startsWith("Bearer ") ? header.mid(7) : QByteArray();
}

QByteArray SubtitleLogin::newToken()
{
    const qint64 life = m_behaviours.has("short-token"_L1) ? ShortTokenSeconds : TokenSeconds;
    const QByteArray claims =
        "{\"iss\":\"standin\",\"exp\":" + QByteArray::number(m_time.date().toSecsSinceEpoch() + life) + "}";
    const QByteArray token =
        part("{\"alg\":\"HS256\"}") + '.' + part(claims) + ".sig" + QByteArray::number(++m_made);
    m_tokens += token;
    return token;
}

ServedAnswer SubtitleLogin::login(const ReceivedRequest &request, const QByteArray &vip)
{
    const QJsonObject given = QJsonDocument::fromJson(request.body).object();
    if (given[u"username"_s].toString().contains(u'@')) {
        ++m_refused;
        return jsonAnswer(400, R"({"message":"Use the user name, not the e-mail","status":400})");
    }
    if (given[u"username"_s] != SubtitleStandIn::UserName ||
        given[u"password"_s] != SubtitleStandIn::Password) {
        const QByteArray left = QByteArray::number(10 - ++m_refused);
        return jsonAnswer(401, R"({"message":"Error, invalid username/password failed:1 remaining:)" + left +
                                   R"(  ","status":401})");
    }
    QByteArray host = request.header("Host");
    if (m_behaviours.has("vip"_L1))
        host = vip;
    if (m_behaviours.has("vip-elsewhere"_L1))
        host = "api.elsewhere.example";
    return jsonAnswer(
        200, R"({"user":{"allowed_translations":1,"allowed_downloads":20,"level":"Reader","user_id":1,)"
             R"("ext_installed":false,"vip":false},"token":")" +
                 newToken() + R"(","status":200,"base_url":")" + host + R"("})");
}

ServedAnswer SubtitleLogin::logout(const ReceivedRequest &request)
{
    m_tokens.remove(tokenOf(request));
    return jsonAnswer(200, R"({"message":"token successfully destroyed","status":200})");
}

std::optional<ServedAnswer> SubtitleLogin::refusal(const ReceivedRequest &request)
{
    const QByteArray token = tokenOf(request);
    if (token.isEmpty())
        return std::nullopt;
    const auto goneWith = [&](QLatin1StringView name) {
        if (!m_behaviours.takeOnce(name, "search"_L1))
            return false;
        m_tokens.remove(token);
        return true;
    };
    if (goneWith("token-gone-406"_L1))
        return jsonAnswer(406, R"({"message":"invalid token","status":406})");
    if (goneWith("token-gone-500"_L1))
        return jsonAnswer(500, R"({"message":"invalid token","status":500})");
    if (goneWith("token-gone"_L1) || m_behaviours.has("token-refused"_L1) || !m_tokens.contains(token))
        return jsonAnswer(401, R"({"message":"invalid token","status":401})");
    return std::nullopt;
}
