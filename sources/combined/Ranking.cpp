#include "Ranking.h"

#include <media/names/ReleaseAgreement.h>

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr double SameFrameRate = 0.01;
constexpr int FrameRateWeight = 3;

std::optional<double> frameRateIn(const QString &videoName)
{
    static const QRegularExpression rate(u"(?<!\\d)(\\d{2}(?:\\.\\d{1,3})?)[ ._-]?fps"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = rate.match(videoName);
    if (!match.hasMatch())
        return std::nullopt;
    return match.captured(1).toDouble();
}

int points(bool is, Preference preference)
{
    if (!is || preference == Preference::Neutral)
        return 0;
    return preference == Preference::Preferred ? 1 : -1;
}

int preferencePoints(const Subtitle &subtitle, const RankingPreferences &preferences)
{
    return points(subtitle.hearingImpaired, preferences.hearingImpaired) +
           points(subtitle.foreignPartsOnly, preferences.foreignPartsOnly) +
           points(subtitle.machineTranslated, preferences.machineTranslated);
}

/// Greater is better, member by member.
using Rank = std::tuple<bool, int, int, bool, qint64>;

Rank rankOf(const Subtitle &subtitle, const QString &videoName, std::optional<double> frameRate,
            const RankingPreferences &preferences)
{
    int agreement = videoName.isEmpty() ? 0 : releaseAgreement(subtitle.subFileName, videoName);
    if (frameRate && subtitle.framesPerSecond &&
        std::abs(*frameRate - *subtitle.framesPerSecond) < SameFrameRate)
        agreement += FrameRateWeight;
    return {subtitle.matchesHash, preferencePoints(subtitle, preferences), agreement, subtitle.trusted,
            subtitle.downloads.value_or(0)};
}
} // namespace

Preference preferenceFromText(const QString &text)
{
    if (text == "preferred"_L1)
        return Preference::Preferred;
    return text == "avoided"_L1 ? Preference::Avoided : Preference::Neutral;
}

QList<SubtitlePtr> ranked(const QList<SubtitlePtr> &subtitles, const QString &videoName,
                          const RankingPreferences &preferences, const std::stop_token &stop)
{
    const std::optional<double> frameRate = frameRateIn(videoName);
    std::vector<std::pair<Rank, SubtitlePtr>> rows;
    rows.reserve(static_cast<std::size_t>(subtitles.size()));
    for (const SubtitlePtr &subtitle : subtitles) {
        if (stop.stop_requested())
            return {};
        rows.emplace_back(rankOf(*subtitle, videoName, frameRate, preferences), subtitle);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto &one, const auto &other) { return one.first > other.first; });
    QList<SubtitlePtr> result;
    result.reserve(subtitles.size());
    for (const auto &[rank, subtitle] : rows)
        result += subtitle;
    return result;
}

QueryResult bestRows(const QList<SubtitlePtr> &found, const QString &videoName,
                     const RankingPreferences &preferences, const std::stop_token &stop)
{
    const QList<SubtitlePtr> all = ranked(withoutDuplicates(found, stop), videoName, preferences, stop);
    const qsizetype count = std::min(all.size(), QueryResult::MaxRows);
    return {all.first(count), all.size() - count};
}
