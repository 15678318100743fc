#include "RuleWords.h"

#include "WordReader.h"

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
constexpr int FirstYear = 1900;
constexpr int LastYear = 2049;

QSet<QString> words(QStringView text)
{
    QSet<QString> result;
    for (const QStringView word : text.split(u' '))
        result += word.toString();
    return result;
}
} // namespace

bool isSeasonWord(const QString &word)
{
    static const QSet<QString> known =
        words(u"season seasons saison saisons stagione stagioni temporada temporadas temp tem staffel "
              "staffeln seizoen sezon sezona sezonul sezóna sesong säsong sæson kausi évad series se сезон "
              "сезона сезоны 시즌");
    return known.contains(word);
}

bool isEpisodeWord(const QString &word)
{
    static const QSet<QString> known = words(
        u"episode episodes ep eps épisode épisodes folge folgen episodio episodios episodi puntata "
        "afl aflevering capitulo capítulo odcinek odc avsnitt afsnit jakso bölüm bolum blm epizod epizoda "
        "epizód díl diel rész серия серии серій эпизод эпизоды выпуск serija serya seriya serii");
    return known.contains(word);
}

std::optional<int> wholeNumber(const QString &word, qsizetype maxDigits)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(1, maxDigits);
    return reader.atEnd() ? number : std::nullopt;
}

std::optional<int> versionedNumber(const QString &word)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(1, 4);
    if (number && reader.take("v"_L1) && !reader.number(1, 1))
        return std::nullopt;
    return reader.atEnd() ? number : std::nullopt;
}

std::optional<int> countedNumber(const QString &word)
{
    const QString counted = word.startsWith(u'第') ? word.mid(1) : word;
    static const QString units = u"話话集回화회"_s;
    const bool isCounted = !counted.isEmpty() && units.contains(counted.back());
    return isCounted ? wholeNumber(counted.chopped(1), 4) : std::nullopt;
}

std::optional<int> countedSeason(const QString &word)
{
    if (word.startsWith(u"시즌"_s))
        return wholeNumber(word.mid(2), 2);
    static const QString units = u"季期기"_s;
    static const QString numerals = u"一二三四五六七八九十"_s;
    const QString counted = word.startsWith(u'第') ? word.mid(1) : word;
    if (counted.size() < 2 || !units.contains(counted.back()))
        return std::nullopt;
    if (const qsizetype numeral = numerals.indexOf(counted[0]); numeral >= 0 && counted.size() == 2)
        return int(numeral) + 1;
    return wholeNumber(counted.chopped(1), 2);
}

std::optional<int> writtenNumber(const QString &word)
{
    static const QStringList english =
        u"one two three four five six seven eight nine ten eleven twelve"_s.split(u' ');
    static const QStringList roman = u"i ii iii iv v vi vii viii ix x xi xii"_s.split(u' ');
    for (const QStringList *numbers : {&english, &roman}) {
        if (const qsizetype index = numbers->indexOf(word); index >= 0)
            return int(index) + 1;
    }
    return wholeNumber(word, 2);
}

bool isRangeWord(const QString &word)
{
    static const QSet<QString> known = words(u"to ao til bis a al до по");
    return known.contains(word);
}

bool isMonthName(const QString &word)
{
    static const QSet<QString> known = words(
        u"jan feb mar apr may jun jul aug sep oct nov dec january february march april june july august "
        "september october november december");
    return known.contains(word);
}

bool isYear(const QString &word)
{
    const int number = word.size() == 4 ? wholeNumber(word, 4).value_or(0) : 0;
    return number >= FirstYear && number <= LastYear;
}
