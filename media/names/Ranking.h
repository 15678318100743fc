#pragma once
#include <model/Subtitle.h>
#include <QList>
#include <stop_token>

/// What a person thinks of subtitles of a kind.
enum class Liking
{
    Neutral,
    Preferred,
    Avoided
};

/// "preferred" and "avoided"; any other text is neutral.
Liking likingFromText(const QString &text);

struct RankingPreferences
{
    Liking hearingImpaired = Liking::Neutral;
    Liking foreignPartsOnly = Liking::Avoided;
    Liking machineTranslated = Liking::Avoided;

    bool operator==(const RankingPreferences &) const = default;
};

/// The best first: those that match the file's hash, then by the person's preferences, by how well the
/// release and its frame rate agree with the video's own name (which may be empty), trusted ones, and by
/// downloads. Equal ones keep their order. Ends early once it is asked to stop, and what it gives then is of
/// no use. Any thread.
QList<SubtitlePtr> ranked(const QList<SubtitlePtr> &subtitles, const QString &videoName,
                          const RankingPreferences &preferences, const std::stop_token &stop = {});

/// What a search gives of all that was found.
struct BestRows
{
    static constexpr qsizetype MaxRows = 2000;

    QList<SubtitlePtr> subtitles;
    qint64 leftOut = 0; // ranked below them

    /// Each subtitle once, the best first, and no more than a person may ever look through.
    static BestRows of(const QList<SubtitlePtr> &found, const QString &videoName,
                       const RankingPreferences &preferences, const std::stop_token &stop = {});
};
