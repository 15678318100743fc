#include "FileNameParser.h"

#include "NameRules.h"

#include <base/FileManager.h>

using namespace Qt::StringLiterals;

namespace
{
/// Tries the rules of one table. Returns whether one matched.
bool applyFirst(std::span<const NameRule> rules, const NameTokens &name, NameFacts &facts)
{
    for (const NameRule &rule : rules) {
        for (qsizetype i = facts.titleBegin; i < name.count(); ++i) {
            if (rule.apply(name, i, facts))
                return true;
        }
    }
    return false;
}

/// "Show Season 1 S01E02": the season's first mention is not part of the title.
void endBeforeRepeatedSeason(const NameTokens &name, NameFacts &facts)
{
    for (const NameRule &rule : seasonRules()) {
        NameFacts again = facts;
        if (applyFirst({&rule, 1}, name, again) && again.season == facts.season)
            facts.endTitleAt(again.titleEnd);
    }
}

void findSeasonAndEpisode(const NameTokens &name, NameFacts &facts)
{
    if (applyFirst(seasonAndEpisodeRules(), name, facts) || applyFirst(pairRules(), name, facts)) {
        endBeforeRepeatedSeason(name, facts);
        return;
    }
    if (applyFirst(seasonRules(), name, facts))
        endBeforeRepeatedSeason(name, facts);
    if (facts.episode || applyFirst(episodeRules(), name, facts))
        return;
    if (!facts.season && applyFirst(barePairRules(), name, facts))
        return;
    applyFirst(numberRules(), name, facts);
}

QString textOf(const NameTokens &name, qsizetype first, qsizetype last)
{
    if (last <= first)
        return {};
    const qsizetype begin = name[first].begin;
    qsizetype end = name[last - 1].end;
    while (end < name.name().size() && (name.name()[end] == u'!' || name.name()[end] == u'?'))
        ++end;
    QString title = name.name().mid(begin, end - begin);
    for (QChar &c : title) {
        if (c == u'.' || c == u'_' || c.category() == QChar::Other_Control)
            c = u' ';
    }
    return title.simplified();
}

QString searchStringOf(const NameTokens &name, const NameFacts &facts, const QString &title)
{
    if (title.isEmpty())
        return name.name().simplified();
    if (facts.partEnd > 0)
        return textOf(name, facts.titleBegin, facts.partEnd);
    if (facts.season && facts.episode)
        return u"%1 S%2E%3"_s.arg(title).arg(*facts.season, 2, 10, '0'_L1).arg(*facts.episode, 2, 10, '0'_L1);
    return facts.year ? u"%1 %2"_s.arg(title).arg(*facts.year) : title;
}
} // namespace

VideoFileComponents parseVideoName(const QString &text)
{
    const NameTokens name(text);
    NameFacts facts;
    facts.titleEnd = name.count();
    skipLeadIn(name, facts);
    findYear(name, facts);
    findSeasonAndEpisode(name, facts);
    findTitleEnd(name, facts);
    const QString title = textOf(name, facts.titleBegin, facts.titleEnd);
    return {searchStringOf(name, facts, title), title, facts.year, facts.season, facts.episode};
}

VideoFileComponents videoFileComponents(const QUrl &url)
{
    return parseVideoName(FileManager::displayName(url));
}
