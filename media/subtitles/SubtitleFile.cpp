#include "SubtitleFile.h"

#include "SubtitleFormat.h"
#include "SubtitleUnpacker.h"
#include "TextDecoding.h"

namespace
{
// A single cue takes forty bytes; notices and error pages have no cue.
constexpr qsizetype MinBytes = 20;

SubtitleFile failed(SubtitleFile::Failure failure)
{
    SubtitleFile file;
    file.failure = failure;
    return file;
}

SubtitleFile::Failure failureOf(SubtitleUnpacker::Failure failure)
{
    switch (failure) {
    case SubtitleUnpacker::Failure::TooLarge:
        return SubtitleFile::Failure::TooLarge;
    case SubtitleUnpacker::Failure::Locked:
    case SubtitleUnpacker::Failure::UnknownArchive:
        return SubtitleFile::Failure::UnknownArchive;
    case SubtitleUnpacker::Failure::NothingInside:
        return SubtitleFile::Failure::NoSubtitle;
    case SubtitleUnpacker::Failure::Damaged:
        return SubtitleFile::Failure::Damaged;
    case SubtitleUnpacker::Failure::None:
        break;
    }
    return SubtitleFile::Failure::None;
}
SubtitleFile understood(const QByteArray &content, const QString &language)
{
    using Failure = SubtitleFile::Failure;
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
    if (unpacked.failure != SubtitleUnpacker::Failure::None)
        return failed(failureOf(unpacked.failure));
    return understood(unpacked.content, language);
}
