#pragma once
#include <QString>
#include <optional>

/// The extension of the subtitle format a text is written in ("srt", "vtt", "ass" …), or nothing when there
/// is not one cue of any known format in it. Looks at the content alone. Any thread.
std::optional<QString> subtitleFormat(const QString &text);
