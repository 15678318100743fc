#include "NameRules.h"
#include "RuleWords.h"

using namespace Qt::StringLiterals;

namespace
{
/// The first word after the brackets around word `i`.
qsizetype behindBracket(const NameTokens &name, qsizetype i)
{
    const int bracket = name[i].outerBracket;
    while (i < name.count() && name[i].outerBracket == bracket)
        ++i;
    return i;
}

bool isTechnical(const NameTokens &name, qsizetype begin, qsizetype end)
{
    for (qsizetype i = begin; i < end; ++i) {
        const bool isNumber = wholeNumber(name[i].word, 8) || countedNumber(name[i].word);
        if (!name[i].isAboutFile() && !isNumber)
            return false;
    }
    return true;
}

/// "www.example.com - Title" and "example.com - Title": the first word after the dash.
qsizetype behindSite(const NameTokens &name, qsizetype begin)
{
    constexpr qsizetype MaxSiteWords = 6;
    const bool saysWww = name[begin].word == "www"_L1;
    for (qsizetype i = begin + 1; i < std::min(name.count(), begin + MaxSiteWords); ++i) {
        if (name.isDividedBefore(i))
            return saysWww || (i >= begin + 2 && isListed(name[i - 1].word, WordList::TopLevelDomain))
                       ? i
                       : begin;
        if (!name.isJoinedBefore(i, u'.') && !name.isJoinedBefore(i, u'-'))
            return begin;
    }
    return begin;
}

bool hasLatinLetter(const NameTokens &name, qsizetype begin, qsizetype end)
{
    for (qsizetype i = begin; i < end; ++i) {
        for (const QChar c : name[i].word) {
            if (c >= u'a' && c <= u'z')
                return true;
        }
    }
    return false;
}

/// "[Group][Batch] Title": the first word after brackets without numbers and words about the file; -1 when
/// the title must be in brackets.
qsizetype textBehindBrackets(const NameTokens &name, qsizetype begin)
{
    while (begin < name.count() && name[begin].outerBracket > 0) {
        const qsizetype end = behindBracket(name, begin);
        if (!name[begin].isSquare || isTechnical(name, begin, end))
            return -1;
        begin = end;
    }
    const bool isTitle =
        begin < name.count() && !name[begin].isAboutFile() && hasLatinLetter(name, begin, begin + 1);
    return isTitle ? begin : -1;
}

/// "1080p Title", "HD 720p: Title": the first word after those about the file.
qsizetype behindFileWords(const NameTokens &name, qsizetype begin)
{
    bool isSure = false;
    qsizetype i = begin;
    for (; i < name.count() && name[i].isAboutFile(); ++i) {
        const bool isPicture = name[i].kind == WordKind::Resolution || name[i].kind == WordKind::VideoCodec;
        isSure |= isPicture && name[i].isStrong() && !wholeNumber(name[i].word, 4);
    }
    return isSure && i < name.count() ? i : begin;
}

bool isMonthNews(const QString &word)
{
    return word.endsWith(u"月新番"_s);
}

/// The usefulness of a title for searching: 3 in Latin letters, 2 with some, 1 with none.
int scriptRank(const NameTokens &name, qsizetype begin, qsizetype end)
{
    if (!hasLatinLetter(name, begin, end))
        return 1;
    for (qsizetype i = begin; i < end; ++i) {
        if (isEastAsian(name[i].word))
            return 2;
    }
    return 3;
}

/// "[Group][Title][Other title][12][1080p]": of the brackets before the first number or technical word, the
/// first all in Latin letters, or else the first with some, or else the first.
void chooseBracket(const NameTokens &name, NameFacts &facts)
{
    qsizetype chosenBegin = -1;
    qsizetype chosenEnd = -1;
    int chosenRank = 0;
    for (qsizetype begin = facts.titleBegin; begin < name.count() && chosenRank < 3;) {
        const qsizetype end = name[begin].outerBracket == 0 ? begin + 1 : behindBracket(name, begin);
        const bool isNews = isMonthNews(name[begin].word);
        if (!isNews && (isTechnical(name, begin, end) || name[begin].outerBracket == 0))
            break;
        const int rank = isNews ? 0 : scriptRank(name, begin, end);
        if (rank > chosenRank) {
            chosenRank = rank;
            chosenBegin = begin;
            chosenEnd = end;
        }
        begin = end;
    }
    if (chosenBegin < 0)
        return;
    facts.titleBegin = chosenBegin;
    facts.endTitleAt(chosenEnd);
}

/// "003. Show - Name of the episode", "01 - Show": a running number before the title.
void leadingNumber(const NameTokens &name, NameFacts &facts)
{
    const qsizetype first = facts.titleBegin;
    const std::optional<int> number = wholeNumber(name[first].word, 3);
    if (!number || !name[first].word.startsWith(u'0') || first + 1 >= name.count())
        return;
    qsizetype next = first + 1;
    while (next < name.count() && name[next].word.startsWith(u'0') && wholeNumber(name[next].word, 3))
        ++next; // "003-004. Show"; three such are a date
    if (next >= name.count() || wholeNumber(name[next].word, 4))
        return;
    facts.titleBegin = next;
    if (next - first > 2)
        return;
    facts.episode = number;
    for (qsizetype i = next + 1; i < name.count(); ++i) {
        if (name.isDividedBefore(i))
            return facts.endTitleAt(i);
    }
}

/// "(1999) Title": the year before it.
bool isLeadingYear(const NameTokens &name, qsizetype begin, qsizetype end)
{
    return end == begin + 1 && isYear(name[begin].word) && end < name.count() &&
           name[end].outerBracket == 0 && name.gapBefore(end).endsWith(u' ');
}

/// Brackets before a title: a group's or site's square ones, those that only say how the file is made, and a
/// running number. "(500) Days" is a title.
bool isLeadInBracket(const NameTokens &name, qsizetype begin, qsizetype end)
{
    if (name[begin].outerBracket == 0 || end >= name.count())
        return false;
    const bool isRunningNumber = end == begin + 1 && wholeNumber(name[begin].word, 2);
    const bool isAboutFile = name[begin].isAboutFile() && isTechnical(name, begin, end);
    const bool isFileAllThatFollows = name[end].isStrong();
    // "(Group) Title", but neither "(500) Lights" nor "(Un)lit".
    const bool isGroup = hasLatinLetter(name, begin, end) && name.gapBefore(end).endsWith(u' ') &&
                         name.gapBefore(end).size() == 2 && name[end].bracket == 0;
    return (name[begin].isSquare || isLeadingYear(name, begin, end) || isRunningNumber || isAboutFile ||
            isGroup) &&
           !isFileAllThatFollows;
}
} // namespace

void skipLeadIn(const NameTokens &name, NameFacts &facts)
{
    if (name.count() == 0)
        return;
    for (qsizetype begin = 0; begin < name.count(); begin = facts.titleBegin) {
        const qsizetype behind = behindBracket(name, begin);
        if (!isLeadInBracket(name, begin, behind))
            break;
        if (isLeadingYear(name, begin, behind))
            facts.year = name[begin].word.toInt();
        else
            facts.startsWithGroup = true;
        facts.titleBegin = behind;
        if (!name[behind].isSquare && !isMonthNews(name[behind].word))
            continue;
        const qsizetype text = textBehindBrackets(name, behind);
        if (text < 0)
            return chooseBracket(name, facts);
        facts.titleBegin = text;
        return;
    }
    facts.titleBegin = behindSite(name, facts.titleBegin);
    facts.titleBegin = behindFileWords(name, facts.titleBegin);
    leadingNumber(name, facts);
}
