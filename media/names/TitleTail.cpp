#include "TitleTail.h"

#include "RuleWords.h"

#include <QSet>
#include <climits>

using namespace Qt::StringLiterals;

namespace
{
bool isAmong(const QString &word, const QSet<QString> &known)
{
    return known.contains(word);
}

bool isCompletenessWord(const QString &word)
{
    static const QSet<QString> known = {u"complete"_s,  u"completa"_s,  u"completo"_s,
                                        u"integrale"_s, u"intégrale"_s, u"komplett"_s};
    return isAmong(word, known);
}

bool isCollectionWord(const QString &word)
{
    static const QSet<QString> known = {u"series"_s, u"collection"_s, u"season"_s, u"seasons"_s, u"box"_s,
                                        u"boxset"_s, u"set"_s,        u"pack"_s,   u"saga"_s};
    return isAmong(word, known);
}

/// "- The Complete Series", "Complete Collection", "The Complete" before a season.
void endBeforeCompleteness(const NameTokens &name, NameFacts &facts)
{
    qsizetype i = facts.titleEnd;
    while (i > facts.titleBegin + 1 && isCollectionWord(name[i - 1].word))
        --i;
    const bool isWhole = i < facts.titleEnd || facts.titleEnd < name.count();
    if (!isWhole || i < facts.titleBegin + 2 || !isCompletenessWord(name[i - 1].word))
        return;
    --i;
    if (i > facts.titleBegin + 1 && name[i - 1].word == "the"_L1 && name.isDividedBefore(i - 1))
        --i;
    facts.endTitleAt(i);
}

/// "- International Cut", "- 20th Anniversary Edition": up to three words behind a dash.
void endBeforeCut(const NameTokens &name, NameFacts &facts)
{
    constexpr qsizetype MaxWords = 4;
    static const QSet<QString> cuts = {u"cut"_s, u"edition"_s, u"version"_s};
    if (facts.titleEnd >= name.count() || facts.titleEnd < facts.titleBegin + 2 ||
        !isAmong(name[facts.titleEnd - 1].word, cuts))
        return;
    for (qsizetype i = facts.titleEnd - 1; i > std::max(facts.titleBegin, facts.titleEnd - 1 - MaxWords);
         --i) {
        if (name.isDividedBefore(i))
            return facts.endTitleAt(i);
    }
}

/// "Show - 313-315 - S16E03": how the episodes are counted through all seasons, before the season.
void endBeforeAbsoluteNumber(const NameTokens &name, NameFacts &facts)
{
    const qsizetype last = facts.titleEnd - 1;
    if (!facts.season || !facts.episode || last <= facts.titleBegin || facts.titleEnd >= name.count() ||
        !wholeNumber(name[last].word, 4))
        return;
    // A range ascends: "9-1-1" is a title.
    const bool isRange =
        last - 1 > facts.titleBegin && name.gapBefore(last) == QStringView(u"-") &&
        wholeNumber(name[last - 1].word, 4).value_or(INT_MAX) < *wholeNumber(name[last].word, 4);
    if (isRange)
        facts.endTitleAt(last - 1);
    else if (name.isDividedBefore(last) && !isYear(name[last].word))
        facts.endTitleAt(last);
}

/// "Title AKA Other Title": the first is the title.
void endBeforeOtherTitle(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = facts.titleBegin + 1; i + 1 < facts.titleEnd; ++i) {
        const bool isSpelled = name[i].word == "a"_L1 && name[i + 1].word == "k"_L1 &&
                               i + 3 < facts.titleEnd && name[i + 2].word == "a"_L1;
        if (name[i].word == "aka"_L1 || isSpelled)
            return facts.endTitleAt(i);
    }
}

/// "Title Part 2" without a year: a film's year makes the part a title's.
void endBeforePart(const NameTokens &name, NameFacts &facts)
{
    if (facts.year)
        return;
    for (qsizetype i = facts.titleBegin + 1; i + 1 < facts.titleEnd; ++i) {
        if ((name[i].word != "part"_L1 && name[i].word != "pt"_L1) || !writtenNumber(name[i + 1].word))
            continue;
        facts.partEnd = i + 2;
        return facts.endTitleAt(i);
    }
}

/// "[Group] Title OVA [720p]": how an anime was published.
void endBeforePublication(const NameTokens &name, NameFacts &facts)
{
    static const QSet<QString> publications = {u"ova"_s, u"ona"_s, u"oad"_s};
    const bool isAtEnd = facts.titleEnd < name.count() && facts.titleEnd > facts.titleBegin + 1;
    if (facts.startsWithGroup && isAtEnd && isAmong(name[facts.titleEnd - 1].word, publications))
        facts.endTitleAt(facts.titleEnd - 1);
}
} // namespace

void cutTitleTail(const NameTokens &name, NameFacts &facts)
{
    endBeforeCompleteness(name, facts);
    endBeforeCut(name, facts);
    endBeforeAbsoluteNumber(name, facts);
    endBeforeOtherTitle(name, facts);
    endBeforePart(name, facts);
    endBeforePublication(name, facts);
}
