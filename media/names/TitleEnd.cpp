#include "TitleEnd.h"

#include "RuleWords.h"
#include "TitleChoice.h"
#include "TitleTail.h"

using namespace Qt::StringLiterals;

namespace
{
bool isInRange(const std::optional<int> &number, int low, int high)
{
    return number && *number >= low && *number <= high;
}

/// The first word of the date "2019.04.19", "19-04-2019", "19 April 2019" or "April 19, 2019" that has its
/// year at `i`; -1 when there is none.
qsizetype dateAround(const NameTokens &name, qsizetype i)
{
    const auto number = [&](qsizetype at) {
        return at >= 0 && at < name.count() ? wholeNumber(name[at].word, 2) : std::nullopt;
    };
    if (isInRange(number(i + 1), 1, 31) && isInRange(number(i + 2), 1, 31) &&
        name.gapBefore(i + 1) == name.gapBefore(i + 2))
        return i;
    if (isInRange(number(i - 1), 1, 12) && isInRange(number(i - 2), 1, 31))
        return i - 2;
    const auto isMonth = [&](qsizetype at) {
        return at >= 0 && at < name.count() && isMonthName(name[at].word);
    };
    const bool hasMonth = (isMonth(i - 1) && isInRange(number(i - 2), 1, 31)) ||
                          (isMonth(i - 2) && isInRange(number(i - 1), 1, 31));
    return hasMonth ? i - 2 : -1;
}

/// "15.12.22": a date without its century, in one of the usual orders.
bool isShortDate(const NameTokens &name, qsizetype i)
{
    if (i + 2 >= name.count() || name.gapBefore(i + 1).size() != 1 ||
        name.gapBefore(i + 1) != name.gapBefore(i + 2))
        return false;
    for (qsizetype at = i; at < i + 3; ++at) {
        if (name[at].word.size() != 2 || !wholeNumber(name[at].word, 2))
            return false;
    }
    const int first = name[i].word.toInt();
    const int second = name[i + 1].word.toInt();
    const int third = name[i + 2].word.toInt();
    const auto isDayAndMonth = [](int day, int month) {
        return day >= 1 && day <= 31 && month >= 1 && month <= 12;
    };
    return isDayAndMonth(first, second) || isDayAndMonth(second, first) || isDayAndMonth(third, second);
}

/// "140722" and "20201013".
bool isDateWord(const QString &word)
{
    if ((word.size() != 6 && word.size() != 8) || !wholeNumber(word, 8))
        return false;
    const int monthAt = word.size() == 8 ? 4 : 2;
    const bool isCentury = word.size() == 6 || isYear(word.left(4));
    return isCentury && isInRange(word.mid(monthAt, 2).toInt(), 1, 12) &&
           isInRange(word.mid(monthAt + 2).toInt(), 1, 31);
}

/// Years are also written "2006г".
QString yearOf(const QString &word)
{
    const QString year = word.endsWith(u'г') ? word.chopped(1) : word;
    return isYear(year) ? year : QString();
}

/// The first word that is surely about the file. "1280*720" is, too.
qsizetype fileBeginOf(const NameTokens &name, qsizetype begin)
{
    for (qsizetype i = begin; i < name.count(); ++i) {
        const bool isFrameSize = i + 1 < name.count() && name.gapBefore(i + 1) == QStringView(u"*");
        if (name[i].kind.strength == WordStrength::Strong || isFrameSize)
            return i;
    }
    return name.count();
}

/// The year's place: the first alone in brackets, else the last before the words about the file, else any
/// behind them.
qsizetype yearPlace(const NameTokens &name, const NameFacts &facts)
{
    qsizetype best = -1;
    for (qsizetype i = facts.titleBegin + 1; i < name.count(); ++i) {
        const bool isChapter = name[i - 1].word == "cap"_L1; // "Cap.1905"
        if (yearOf(name[i].word).isEmpty() || isChapter)
            continue;
        if (name.isAloneInBrackets(i))
            return i;
        if (i < facts.fileBegin || best < 0)
            best = i;
    }
    return best;
}

/// "2001-2011" begins with its first year.
qsizetype firstOfYears(const NameTokens &name, qsizetype place, qsizetype titleBegin)
{
    const bool isRange =
        place - 1 > titleBegin && name.gapBefore(place) == QStringView(u"-") && isYear(name[place - 1].word);
    return isRange ? place - 1 : place;
}

/// Where the words about the file begin: at a strong word, or at the first of the weak ones that lead up to
/// it.
void endBeforeTechnicalWords(const NameTokens &name, NameFacts &facts)
{
    qsizetype run = -1;
    for (qsizetype i = facts.titleBegin + 1; i < facts.titleEnd; ++i) {
        const WordStrength strength = name[i].kind.strength;
        if (strength == WordStrength::None) {
            run = -1;
            continue;
        }
        run = run < 0 ? i : run;
        if (strength == WordStrength::Strong)
            return facts.endTitleAt(run);
    }
}

/// Brackets at the title's end are no part of it, whether they close there ("Show (Original) S01") or hold
/// what ends it; square ones are not anywhere.
void endBeforeBrackets(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = facts.titleBegin + 1; i < facts.titleEnd; ++i) {
        const bool opens = name[i].bracket > 0 && name[i - 1].bracket != name[i].bracket;
        const bool lastsToEnd =
            facts.titleEnd < name.count() && name[facts.titleEnd - 1].bracket == name[i].bracket;
        const bool isOpenAtEnd =
            facts.titleEnd < name.count() && name[facts.titleEnd].bracket == name[i].bracket;
        if (opens && (lastsToEnd || isOpenAtEnd || name.isSquare(i)))
            return facts.endTitleAt(i);
    }
}

/// "Film EXTENDED 2011", "Show Complete S02": what says how the film is offered, before the fact that ends
/// the title.
void dropRemarks(const NameTokens &name, NameFacts &facts)
{
    // Remarks are written in capitals; "The Harbour Festival 2011" is a title.
    const auto isRemark = [&](qsizetype i) {
        const WordKind kind = name[i].kind.kind;
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

/// "2019-04-19 - Show": the day before the title.
void beginBehindDate(const NameTokens &name, NameFacts &facts)
{
    const qsizetype first = facts.titleBegin;
    const qsizetype behind = first + 3;
    if (behind >= name.count() || !name.isDividedBefore(behind) || !isYear(name[first].word) ||
        dateAround(name, first) != first)
        return;
    facts.year = name[first].word.toInt();
    facts.titleBegin = behind;
}
} // namespace

void findYear(const NameTokens &name, NameFacts &facts)
{
    beginBehindDate(name, facts);
    facts.fileBegin = fileBeginOf(name, facts.titleBegin + 1);
    for (qsizetype i = facts.titleBegin + 1; i < name.count(); ++i) {
        if (isDateWord(name[i].word))
            facts.endTitleAt(i);
    }
    for (qsizetype i = facts.titleBegin + 1; i < facts.titleEnd; ++i) {
        if (!isShortDate(name, i))
            continue;
        facts.dateBegin = i;
        facts.dateEnd = i + 3;
        facts.endTitleAt(i);
    }
    const qsizetype lastPlace = yearPlace(name, facts);
    if (lastPlace < 0)
        return;
    const qsizetype place = firstOfYears(name, lastPlace, facts.titleBegin);
    facts.year = yearOf(name[place].word).toInt();
    const qsizetype date = dateAround(name, place);
    if (date > facts.titleBegin) {
        facts.dateBegin = date;
        facts.dateEnd = date + 3;
    }
    facts.endTitleAt(date > facts.titleBegin ? date : place);
}

void findTitleEnd(const NameTokens &name, NameFacts &facts)
{
    endBeforeTechnicalWords(name, facts);
    chooseLatinTitle(name, facts);
    endBeforeBrackets(name, facts);
    cutTitleTail(name, facts);
    dropRemarks(name, facts);
}
