#include "FileNameParser.h"

#include "NameLeadIn.h"
#include "NameRules.h"
#include "RuleWords.h"
#include "TitleEnd.h"

#include <base/FileManager.h>

using namespace Qt::StringLiterals;

namespace
{
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

QString searchStringOf(const VideoFileComponents &said, const QString &name)
{
    if (said.title.isEmpty())
        return name.simplified();
    if (said.season && said.episode)
        return u"%1 S%2E%3"_s.arg(said.title)
            .arg(*said.season, 2, 10, '0'_L1)
            .arg(*said.episode, 2, 10, '0'_L1);
    return said.year ? u"%1 %2"_s.arg(said.title).arg(*said.year) : said.title;
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

    VideoFileComponents said;
    said.title = textOf(name, facts.titleBegin, facts.titleEnd);
    said.year = facts.year;
    said.season = facts.season;
    said.episode = facts.episode;
    said.searchString = facts.partEnd > 0 && !said.title.isEmpty()
                            ? textOf(name, facts.titleBegin, facts.partEnd)
                            : searchStringOf(said, name.name());
    return said;
}

VideoFileComponents videoFileComponents(const QUrl &url)
{
    return parseVideoName(FileManager::displayName(url));
}
