#include "NameRules.h"
#include "RuleWords.h"

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
    const auto isDay = [&](qsizetype at) { return isInRange(wholeNumber(name[at].word, 2), 1, 31); };
    const auto isMonth = [&](qsizetype at) { return isInRange(wholeNumber(name[at].word, 2), 1, 12); };
    const auto namesMonth = [&](qsizetype at) { return isListed(name[at].word, WordList::Month); };
    if (isDay(i + 1) && isDay(i + 2) && name.gapBefore(i + 1) == name.gapBefore(i + 2))
        return i;
    const bool endsDate =
        (isDay(i - 2) && (isMonth(i - 1) || namesMonth(i - 1))) || (namesMonth(i - 2) && isDay(i - 1));
    return endsDate ? i - 2 : -1;
}

/// "15.12.22": a date without its century, in one of the usual orders.
bool isShortDate(const NameTokens &name, qsizetype i)
{
    const auto number = [&](qsizetype at) {
        return name[at].word.size() == 2 ? wholeNumber(name[at].word, 2) : std::nullopt;
    };
    const auto isDayAndMonth = [&](qsizetype day, qsizetype month) {
        return isInRange(number(day), 1, 31) && isInRange(number(month), 1, 12);
    };
    const QStringView gap = name.gapBefore(i + 1);
    return gap.size() == 1 && gap == name.gapBefore(i + 2) && number(i) && number(i + 1) && number(i + 2) &&
           (isDayAndMonth(i, i + 1) || isDayAndMonth(i + 1, i) || isDayAndMonth(i + 2, i + 1));
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
    while (begin < name.count() && !name[begin].isStrong() && !name.isJoinedBefore(begin + 1, u'*'))
        ++begin;
    return std::min(begin, name.count());
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
        place - 1 > titleBegin && name.isJoinedBefore(place, u'-') && isYear(name[place - 1].word);
    return isRange ? place - 1 : place;
}

/// "2019-04-19 - Show": the day before the title.
void beginBehindDate(const NameTokens &name, NameFacts &facts)
{
    const qsizetype first = facts.titleBegin;
    if (!name.isDividedBefore(first + 3) || !isYear(name[first].word) || dateAround(name, first) != first)
        return;
    facts.year = name[first].word.toInt();
    facts.titleBegin = first + 3;
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
    if (date <= facts.titleBegin)
        return facts.endTitleAt(place);
    facts.dateBegin = date;
    facts.dateEnd = date + 3;
    facts.endTitleAt(date);
}
