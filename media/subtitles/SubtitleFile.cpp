#include "SubtitleFile.h"

#include "SubtitleFormat.h"
#include "SubtitleUnpacker.h"
#include "TextDecoding.h"

namespace
{
// A single cue takes forty bytes; notices and error pages have no cue.
constexpr qsizetype MinBytes = 20;

using Failure = SubtitleFile::Failure;

SubtitleFile failed(Failure failure)
{
    SubtitleFile file;
    file.failure = failure;
    return file;
}

SubtitleFile understood(const QByteArray &content, const QString &language)
{
    if (content.size() < MinBytes)
        return failed(content.trimmed().isEmpty() ? Failure::Empty : Failure::NoSubtitle);
    const DecodedText decoded = decodedText(content, language);
    const std::optional<QString> format = subtitleFormat(decoded.text);
    // Pictures and programs contain zeros; decoded text has none.
    if (!format || decoded.text.contains(QChar(0)))
        return failed(Failure::NoSubtitle);
    SubtitleFile file;
    file.original = content;
    file.utf8 = decoded.text.toUtf8();
    file.extension = *format;
    return file;
}
} // namespace

SubtitleFile SubtitleFile::read(const QByteArray &bytes, const QString &language)
{
    if (bytes.isEmpty())
        return failed(Failure::Empty);
    const auto isGood = [&language](const QByteArray &content) {
        return understood(content, language).failure == Failure::None;
    };
    const SubtitleUnpacker::Unpacked unpacked = SubtitleUnpacker::unpack(bytes, isGood);
    return unpacked.failure == Failure::None ? understood(unpacked.content, language)
                                             : failed(unpacked.failure);
}
