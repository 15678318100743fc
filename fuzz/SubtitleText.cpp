// Subtitle bytes in every language: the text comes in bounded time, and what was UTF-8 stays as it is.
#include "Oracle.h"

#include <media/subtitles/SubtitleFile.h>
#include <media/subtitles/TextDecoding.h>

#include <QStringDecoder>

#include <array>

namespace
{
constexpr std::array Languages{"eng", "pob", "ger", "rus", "bul", "gre", "tur", "ara", "heb", "jpn",
                               "chi", "zht", "kor", "tha", "vie", "pol", "rum", "scc", "fas", ""};

/// Whether the bytes are UTF-8 that no other rule claims: marks and zeros tell of wider encodings, and an
/// escape of ISO 2022.
bool isPlainUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return !bytes.startsWith("\xef\xbb\xbf") && !decoder.hasError() && !bytes.contains('\0') &&
           !bytes.contains('\x1b') && !text.contains(QChar(0xfeff)) && !text.contains(QChar(0xfffe));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QString language = QString::fromLatin1(Languages.at(data[0] % Languages.size()));
    const QByteArray bytes = bytesOf(data + 1, size - 1);
    const TimeLimit limit(500 + static_cast<double>(size) / 100);

    const QString text = decodedText(bytes, language).text;
    require(text.size() <= bytes.size() + 1, "a text has no more units than the file has bytes");
    if (isPlainUtf8(bytes))
        require(text.toUtf8() == bytes, "what was UTF-8 stays");

    const SubtitleFile file = SubtitleFile::read(bytes, language);
    if (file.failure == SubtitleFile::Failure::None) {
        require(!file.extension.isEmpty() && !file.utf8.isEmpty(), "a subtitle has a format and a text");
        require(QString::fromUtf8(file.utf8).toUtf8() == file.utf8, "what is handed on is UTF-8");
    }
    return 0;
}
