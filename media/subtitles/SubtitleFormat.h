#pragma once
#include <QString>
#include <optional>

/// The extension of a subtitle text's format ("srt", "vtt", "ass" …), or none when it has no cue of a known
/// format. Looks at the content alone. Any thread.
std::optional<QString> subtitleFormat(const QString &text);
