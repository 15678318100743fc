#include "Deformation.h"

#include "Packing.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype BombBytes = 16 * 1024 * 1024;
constexpr qsizetype HugeBytes = 20 * 1024 * 1024;

struct Manner
{
    QLatin1StringView name;
    Delivery delivery;
};
const Manner Manners[] = {
    {"chunked"_L1, Delivery::Chunked},
    {"drip"_L1, Delivery::Dripped},
    {"stall"_L1, Delivery::StalledAfterHeaders},
    {"silent"_L1, Delivery::Silent},
    {"length-too-long"_L1, Delivery::LengthTooLong},
    {"chunked-without-end"_L1, Delivery::ChunkedWithoutEnd},
    {"close-before"_L1, Delivery::ClosedBefore},
    {"close-after"_L1, Delivery::ClosedAfter},
};

ServedAnswer packedAnswer(ServedAnswer answer, const QByteArray &content)
{
    answer.body = gzipped(content);
    answer.setHeader("Content-Encoding", "gzip");
    return answer;
}

QByteArray badUtf8(QByteArray json)
{
    const qsizetype place = json.indexOf("Paper");
    return place < 0 ? QByteArray("{\"data\":\"\xFF\xFE\"}") : json.insert(place + 2, "\xFF\xC0");
}

std::optional<ServedAnswer> replacement(const ServedAnswer &answer, Behaviours &behaviours,
                                        QLatin1StringView endpoint)
{
    const auto has = [&](QLatin1StringView name) { return behaviours.has(name, endpoint); };
    if (behaviours.takeOnce("down-once"_L1, endpoint))
        return jsonAnswer(503, "{}");
    const std::pair<QLatin1StringView, ServedAnswer> others[] = {
        {"down"_L1, jsonAnswer(503, "{\"message\":\"Down for maintenance\"}")},
        {"broken"_L1, jsonAnswer(500, "{\"message\":\"Internal error\"}")},
        {"gateway-page"_L1, pageAnswer(502, "502 Bad Gateway")},
        {"sign-in-page"_L1, {302, {{"Location", "http://sign-in.example/welcome"}}, {}}},
        {"sign-in-511"_L1, pageAnswer(511, "Network Authentication Required")},
        {"html"_L1, pageAnswer(200, "Welcome")},
        {"bad-request"_L1, {400, {{"X-Reason", "Request parameters does not make sense"}}, {}}},
        {"empty"_L1, jsonAnswer(200, {})},
        {"no-content"_L1, {204, {}, {}}},
        {"not-modified"_L1, {304, {}, {}}},
        {"array"_L1, jsonAnswer(200, "[{\"data\":[]}]")},
        {"null"_L1, jsonAnswer(200, "null")},
    };
    for (const auto &[name, other] : others) {
        if (has(name))
            return other;
    }
    if (has("cut"_L1))
        return jsonAnswer(200, answer.body.left(answer.body.size() / 2));
    if (has("20-mib"_L1))
        return jsonAnswer(200, "{\"data\":[\"" + QByteArray(HugeBytes, 'x') + "\"]}");
    if (has("gzip-bomb"_L1)) {
        static const ServedAnswer bomb = packedAnswer({200, {}, {}}, QByteArray(BombBytes, ' '));
        return bomb;
    }
    return std::nullopt;
}
} // namespace

ServedAnswer jsonAnswer(int status, const QByteArray &json)
{
    return {status, {{"Content-Type", "application/json; charset=utf-8"}}, json};
}

ServedAnswer pageAnswer(int status, const QByteArray &title)
{
    return {status,
            {{"Content-Type", "text/html; charset=utf-8"}},
            "<!DOCTYPE html><html><head><title>" + title + "</title></head><body><h1>" + title +
                "</h1></body></html>"};
}

ServedAnswer deformed(ServedAnswer answer, const ReceivedRequest &request, Behaviours &behaviours,
                      QLatin1StringView endpoint)
{
    if (auto other = replacement(answer, behaviours, endpoint))
        answer = *other;
    const auto has = [&](QLatin1StringView name) { return behaviours.has(name, endpoint); };
    if (has("as-text"_L1))
        answer.setHeader("Content-Type", "text/plain");
    if (has("bad-utf8"_L1))
        answer.body = badUtf8(answer.body);
    if (has("bom"_L1))
        answer.body.prepend("\xEF\xBB\xBF");
    if (has("gzip-unasked"_L1) || (has("gzip"_L1) && request.header("Accept-Encoding").contains("gzip")))
        answer = packedAnswer(answer, answer.body);
    for (const Manner &manner : Manners) {
        if (has(manner.name))
            answer.delivery = manner.delivery;
    }
    if (behaviours.takeOnce("close-once"_L1, endpoint))
        answer.delivery = Delivery::ClosedBefore;
    return answer;
}
