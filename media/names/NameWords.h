#pragma once
#include <QString>

/// What a word of a release name is about, apart from the title.
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

/// How sure it is that a word is none of the title's: a strong word ends the title wherever it stands, a weak
/// one
/// ("German", "Extended", "TS") only when nothing but such words follows it up to a strong one.
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
};

/// Looks up a lower-case word, as "bluray", "x264" or "1080p". Any thread.
WordClass classOfWord(const QString &word);
/// The same of two words that may make one, as "blu" and "ray". What is known by its form ("720p") counts
/// here as none: "Part 2 720p" has no 2720 lines.
WordClass classOfJoinedWords(const QString &joined);
