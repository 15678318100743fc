#include "RuleWords.h"

#include <QSet>
#include <QStringList>

#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr int FirstYear = 1900;
constexpr int LastYear = 2049;

/// In the order of WordList.
constexpr const char16_t *Lists[] = {
    u"season seasons saison saisons stagione stagioni temporada temporadas temp tem staffel staffeln seizoen "
    "sezon sezona sezonul sezóna sesong säsong sæson kausi évad series se сезон сезона сезоны 시즌",
    u"episode episodes ep eps épisode épisodes folge folgen episodio episodios episodi puntata afl "
    "aflevering capitulo capítulo odcinek odc avsnitt afsnit jakso bölüm bolum blm epizod epizoda epizód "
    "díl diel rész серия серии серій эпизод эпизоды выпуск serija serya seriya serii",
    u"to ao til bis a al до по",
    u"jan feb mar apr may jun jul aug sep oct nov dec january february march april june july august "
    "september october november december",
    u"end fin final",
    u"complete completa completo integrale intégrale komplett",
    u"series collection season seasons box boxset set pack saga",
    u"cut edition version",
    u"ova ona oad",
    u"com net org tv cc cd ru de ca za nz uk pl art lat to",
};

static_assert(std::size(Lists) == static_cast<std::size_t>(WordList::TopLevelDomain) + 1);

std::vector<QSet<QString>> wordLists()
{
    std::vector<QSet<QString>> lists;
    for (const QStringView words : Lists) {
        const QStringList split = words.toString().split(u' ');
        lists.emplace_back(split.cbegin(), split.cend());
    }
    return lists;
}
} // namespace

bool isListed(const QString &word, WordList list)
{
    static const std::vector<QSet<QString>> lists = wordLists();
    return lists[static_cast<std::size_t>(list)].contains(word);
}

std::optional<int> wholeNumber(const QString &word, qsizetype maxDigits)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(maxDigits);
    return reader.atEnd() ? number : std::nullopt;
}

std::optional<int> versionedNumber(const QString &word)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(4);
    if (number && reader.take("v"_L1) && !reader.number(1))
        return std::nullopt;
    return reader.atEnd() ? number : std::nullopt;
}

std::optional<int> countedNumber(const QString &word)
{
    const QString counted = word.startsWith(u'第') ? word.mid(1) : word;
    const bool isCounted = !counted.isEmpty() && u"話话集回화회"_s.contains(counted.back());
    return isCounted ? wholeNumber(counted.chopped(1), 4) : std::nullopt;
}

std::optional<int> countedSeason(const QString &word)
{
    if (word.startsWith(u"시즌"_s))
        return wholeNumber(word.mid(2), 2);
    const QString counted = word.startsWith(u'第') ? word.mid(1) : word;
    if (counted.size() < 2 || !u"季期기"_s.contains(counted.back()))
        return std::nullopt;
    const qsizetype numeral = u"一二三四五六七八九十"_s.indexOf(counted[0]);
    return numeral >= 0 && counted.size() == 2 ? int(numeral) + 1 : wholeNumber(counted.chopped(1), 2);
}

std::optional<int> writtenNumber(const QString &word)
{
    static const QStringList english =
        u"one two three four five six seven eight nine ten eleven twelve"_s.split(u' ');
    static const QStringList roman = u"i ii iii iv v vi vii viii ix x xi xii"_s.split(u' ');
    const qsizetype index = std::max(english.indexOf(word), roman.indexOf(word));
    return index >= 0 ? int(index) + 1 : wholeNumber(word, 2);
}

bool isYear(const QString &word)
{
    const int number = word.size() == 4 ? wholeNumber(word, 4).value_or(0) : 0;
    return number >= FirstYear && number <= LastYear;
}

bool isEastAsian(const QString &word)
{
    return std::any_of(word.begin(), word.end(), [](QChar c) {
        return c.script() == QChar::Script_Han || c.script() == QChar::Script_Hiragana ||
               c.script() == QChar::Script_Katakana;
    });
}
