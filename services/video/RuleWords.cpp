#include "RuleWords.h"

#include "WordReader.h"

#include <QSet>

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
        words(u"season seasons saison saisons stagione temporada temp tem staffel seizoen "
              "sezon sezona sesong säsong sæson kausi évad series se сезон");
    return known.contains(word);
}

bool isEpisodeWord(const QString &word)
{
    static const QSet<QString> known =
        words(u"episode episodes ep eps épisode folge episodio afl aflevering capitulo "
              "capítulo odcinek avsnitt jakso bölüm bolum blm серия серии серій");
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
    const bool isCounted = counted.endsWith(u'話') || counted.endsWith(u'话') || counted.endsWith(u'集') ||
                           counted.endsWith(u'回');
    return isCounted ? wholeNumber(counted.chopped(1), 4) : std::nullopt;
}

bool isYear(const QString &word)
{
    const int number = word.size() == 4 ? wholeNumber(word, 4).value_or(0) : 0;
    return number >= FirstYear && number <= LastYear;
}
