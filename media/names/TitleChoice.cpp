#include "TitleChoice.h"

#include <algorithm>

namespace
{
constexpr qsizetype MinLetters = 4; // fewer are an abbreviation in the other title

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
} // namespace

bool isEastAsian(const QString &word)
{
    return std::any_of(word.begin(), word.end(), [](QChar c) {
        return c.script() == QChar::Script_Han || c.script() == QChar::Script_Hiragana ||
               c.script() == QChar::Script_Katakana;
    });
}

void chooseLatinTitle(const NameTokens &name, NameFacts &facts)
{
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
