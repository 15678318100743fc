#include "SubtitleLinks.h"

#include "Deformation.h"
#include "Packing.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype BombBytes = 16 * 1024 * 1024;
constexpr qsizetype NineMebibytes = 9 * 1024 * 1024;

QByteArray utf16(const QByteArray &text)
{
    QByteArray bytes("\xFF\xFE");
    const QString characters = QString::fromUtf8(text);
    for (const QChar c : characters) {
        bytes += static_cast<char>(c.unicode() & 0xFF);
        bytes += static_cast<char>(c.unicode() >> 8);
    }
    return bytes;
}
} // namespace

QByteArray SubtitleLinks::content(qint64 fileId)
{
    return "1\r\n00:00:01,000 --> 00:00:02,500\r\nThe lamp is lit. Caf\xC3\xA9, na\xC3\xAFve, number " +
           QByteArray::number(fileId) +
           ".\r\n\r\n2\r\n00:00:03,000 --> 00:00:04,500\r\nAnd the paper burns.\r\n\r\n";
}

QByteArray SubtitleLinks::pathFor(qint64 fileId)
{
    const QByteArray secret = QByteArray::number(fileId, 16) + "0f0f0f0f" + QByteArray::number(++m_links, 16);
    return "/download/" + secret + "/subfile/" + QByteArray::number(fileId) + ".srt";
}

ServedAnswer SubtitleLinks::answer(const ReceivedRequest &request)
{
    const bool used = m_used.contains(request.target);
    m_used += request.target;
    if (m_behaviours.has("link-expired"_L1) || (used && m_behaviours.has("link-once"_L1)))
        return {410, {{"Content-Type", "text/plain"}}, "Invalid or expired link"};
    if (m_behaviours.has("link-forbidden"_L1))
        return pageAnswer(403, "Forbidden");
    if (m_behaviours.has("link-gone"_L1) || !request.path().startsWith("/download/"))
        return pageAnswer(404, "Not found");
    return file(request.path().split('/').last().chopped(4).toLongLong());
}

ServedAnswer SubtitleLinks::file(qint64 fileId) const
{
    const QByteArray text = content(fileId);
    ServedAnswer answer{200, {{"Content-Type", "text/plain; charset=utf-8"}}, text, Delivery::Chunked};
    const auto has = [this](QLatin1StringView name) { return m_behaviours.has(name); };
    if (has("subtitle-gzip"_L1))
        answer.body = gzipped(text);
    if (has("subtitle-zip"_L1))
        answer.body = zipped("../folder/Film.srt", text);
    const QByteArray second = zipped({{"First.srt", text + "Not this one."}, {"Second.srt", text}});
    if (has("subtitle-zip-damaged"_L1))
        answer.body = withoutDeflation(second);
    if (has("subtitle-zip-locked"_L1))
        answer.body = locked(second);
    if (has("subtitle-zip-shut"_L1))
        answer.body = locked(zipped("Film.srt", text));
    if (has("subtitle-rar"_L1))
        answer.body = "Rar!\x1A\x07" + text;
    if (has("subtitle-gif"_L1))
        answer.body = "GIF89a" + QByteArray(500, '\x01');
    if (has("subtitle-html"_L1))
        answer.body = pageAnswer(200, "Please log in").body + QByteArray(200, ' ');
    if (has("subtitle-notice"_L1))
        answer.body =
            "You have reached your limit.\r\nPlease become a member to go on downloading subtitles today, "
            "tomorrow and whenever else you like to do so.\r\n";
    if (has("subtitle-short"_L1))
        answer.body = "1\r\n00:00:01,000 --> 00:00:02,500\r\nBecome a member.\r\n";
    if (has("subtitle-empty"_L1))
        answer.body.clear();
    if (has("subtitle-304"_L1))
        return {304, {}, {}};
    if (has("subtitle-utf16"_L1))
        answer.body = utf16(text);
    if (has("subtitle-1252"_L1))
        answer.body = QString::fromUtf8(text).toLatin1();
    if (has("subtitle-bomb"_L1))
        answer.body = gzipped(QByteArray(BombBytes, '1'));
    if (has("subtitle-9-mib"_L1))
        answer.body = text + QByteArray(NineMebibytes, 'x');
    return answer;
}
