#pragma once
#include <QString>

/// What a word of a release name says about the file.
enum class WordKind
{
    None,
    Resolution,
    Source,
    VideoCodec,
    Audio,
    Edition,
    Language,
    Remark
};

/// Whether a word can be part of the title: a strong word ends the title anywhere, a weak one ("German",
/// "Extended", "TS") only when just such words follow it up to a strong one.
enum class WordStrength
{
    None,
    Weak,
    Strong
};

struct WordClass
{
    WordKind kind = WordKind::None;
    WordStrength strength = WordStrength::None;

    bool isAboutFile() const { return strength != WordStrength::None; }
    bool isStrong() const { return strength == WordStrength::Strong; }
};

/// Looks up a lower-case word, as "bluray", "x264" or "1080p". Any thread.
WordClass classOfWord(const QString &word);
/// The same for two words that may make one, such as "blu" and "ray". Words known by their form ("720p") do
/// not count here: "Part 2 720p" has no 2720 lines.
WordClass classOfJoinedWords(const QString &joined);
