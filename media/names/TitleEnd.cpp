#include "NameRules.h"
#include "RuleWords.h"

#include <climits>

using namespace Qt::StringLiterals;

namespace
{
/// Where the words about the file begin: at a strong word, or at the first of the weak ones that lead up to
/// it.
void endBeforeTechnicalWords(const NameTokens &name, NameFacts &facts)
{
    qsizetype run = -1;
    for (qsizetype i = facts.titleBegin + 1; i < facts.titleEnd; ++i) {
        if (!name[i].isAboutFile())
            run = -1;
        else if (run < 0)
            run = i;
        if (name[i].isStrong())
            return facts.endTitleAt(run);
    }
}

struct Run
{
    qsizetype begin = 0;
    qsizetype end = 0;
    qsizetype letters = 0;
};

qsizetype latinLetters(const QString &word)
{
    return std::count_if(word.begin(), word.end(), [](QChar c) { return c.script() == QChar::Script_Latin; });
}

/// " _ " stands where a slash stood between two titles.
bool isDividedByUnderscore(QStringView gap)
{
    const qsizetype underscore = gap.indexOf(u'_');
    return underscore > 0 && underscore + 1 < gap.size() && gap[underscore - 1].isSpace() &&
           gap[underscore + 1].isSpace();
}

bool startsRun(const NameTokens &name, const Run &run, qsizetype i)
{
    return run.begin == run.end || isDividedByUnderscore(name.gapBefore(i)) ||
           (name[i].bracket != name[i - 1].bracket);
}

/// Chooses the Latin one of a title in two scripts ("海贼王 One Piece", "当我[12集].When.I"), by which
/// releases are known.
void chooseLatinTitle(const NameTokens &name, NameFacts &facts)
{
    constexpr qsizetype MinLetters = 4; // fewer are an abbreviation in the other title
    Run best;
    Run run;
    bool hasOther = false;
    for (qsizetype i = facts.titleBegin; i < facts.titleEnd; ++i) {
        const bool isOther = isEastAsian(name[i].word);
        const bool isSide = name[i].bracket != 0 && name[i].bracket != name[facts.titleBegin].bracket;
        hasOther |= isOther;
        if (isOther || isSide) {
            run = Run();
            continue;
        }
        if (startsRun(name, run, i))
            run = Run{i, i, 0};
        run.end = i + 1;
        run.letters += latinLetters(name[i].word);
        if (run.letters > best.letters)
            best = run;
    }
    if (!hasOther || best.letters < MinLetters)
        return;
    facts.titleBegin = best.begin;
    facts.titleEnd = best.end;
}

/// Brackets at the title's end are no part of it, whether they close there ("Show (Original) S01") or hold
/// what ends it; square ones are not anywhere.
void endBeforeBrackets(const NameTokens &name, NameFacts &facts)
{
    const qsizetype end = facts.titleEnd;
    for (qsizetype i = facts.titleBegin + 1; i < end; ++i) {
        const int bracket = name[i].bracket;
        const bool opens = bracket > 0 && name[i - 1].bracket != bracket;
        const bool isAtEnd =
            end < name.count() && (name[end - 1].bracket == bracket || name[end].bracket == bracket);
        if (opens && (isAtEnd || name[i].isSquare))
            return facts.endTitleAt(i);
    }
}

/// "- The Complete Series", "Complete Collection", "The Complete" before a season.
void endBeforeCompleteness(const NameTokens &name, NameFacts &facts)
{
    qsizetype i = facts.titleEnd;
    while (i > facts.titleBegin + 1 && isListed(name[i - 1].word, WordList::Collection))
        --i;
    const bool isWhole = i < facts.titleEnd || facts.titleEnd < name.count();
    if (!isWhole || i < facts.titleBegin + 2 || !isListed(name[i - 1].word, WordList::Complete))
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
    const qsizetype last = facts.titleEnd - 1;
    if (facts.titleEnd >= name.count() || !isListed(name[last].word, WordList::Cut))
        return;
    for (qsizetype i = last; i > std::max(facts.titleBegin, last - MaxWords); --i) {
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
        last - 1 > facts.titleBegin && name.isJoinedBefore(last, u'-') &&
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
        const bool isSpelled = i + 3 < facts.titleEnd && name[i].word == "a"_L1 &&
                               name[i + 1].word == "k"_L1 && name[i + 2].word == "a"_L1;
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
    const bool isAtEnd = facts.titleEnd < name.count() && facts.titleEnd > facts.titleBegin + 1;
    if (facts.startsWithGroup && isAtEnd && isListed(name[facts.titleEnd - 1].word, WordList::Publication))
        facts.endTitleAt(facts.titleEnd - 1);
}

/// "Film EXTENDED 2011", "Show Complete S02": what says how the film is offered, before the fact that ends
/// the title.
void dropRemarks(const NameTokens &name, NameFacts &facts)
{
    // Remarks are written in capitals; "The Harbour Festival 2011" is a title.
    const auto isRemark = [&](qsizetype i) {
        const WordKind kind = name[i].kind;
        const QString word = name.name().mid(name[i].begin, name[i].end - name[i].begin);
        return kind == WordKind::Edition || kind == WordKind::Resolution ||
               (kind == WordKind::Remark && !(word[0].isUpper() && word.mid(1) == word.mid(1).toLower()));
    };
    if (facts.titleEnd >= name.count() || facts.titleEnd <= facts.titleBegin)
        return;
    qsizetype end = facts.titleEnd;
    while (end > facts.titleBegin + 1 && isRemark(end - 1))
        --end;
    const QString &last = name[end - 1].word;
    const bool isArticle = last == "the"_L1 || last == "a"_L1 || last == "an"_L1;
    if (end > facts.titleBegin + 1 || !isArticle)
        facts.endTitleAt(end); // "The Final Cut" is a title
}

} // namespace

void findTitleEnd(const NameTokens &name, NameFacts &facts)
{
    for (const auto end :
         {endBeforeTechnicalWords, chooseLatinTitle, endBeforeBrackets, endBeforeCompleteness, endBeforeCut,
          endBeforeAbsoluteNumber, endBeforeOtherTitle, endBeforePart, endBeforePublication, dropRemarks})
        end(name, facts);
}
