#include "ReleaseVersion.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxLength = 64;

/// The number, when the part is one.
std::optional<int> numberIn(const QString &part)
{
    bool isNumber = false;
    const int number = part.toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::weak_ordering comparedParts(const QString &one, const QString &other)
{
    const auto oneNumber = numberIn(one);
    const auto otherNumber = numberIn(other);
    if (oneNumber && otherNumber)
        return *oneNumber <=> *otherNumber;
    // "beta2" comes before "beta.b": numbers sort before words.
    if (oneNumber || otherNumber)
        return oneNumber ? std::weak_ordering::less : std::weak_ordering::greater;
    return QString::compare(one, other) <=> 0;
}

QStringList partsOf(const QString &preRelease)
{
    static const QRegularExpression part(u"[0-9]{1,9}|[a-z]+"_s);
    QStringList parts;
    for (auto match = part.globalMatch(preRelease.toLower()); match.hasNext();)
        parts += match.next().captured();
    return parts;
}
} // namespace

std::optional<ReleaseVersion> ReleaseVersion::parse(const QString &text)
{
    static const QRegularExpression form(
        u"\\A([0-9]{1,9}(?:\\.[0-9]{1,9}){0,5})(?:-?([A-Za-z][0-9A-Za-z.-]*))?(?:\\+[0-9A-Za-z.-]+)?\\z"_s);
    if (text.size() > MaxLength)
        return std::nullopt;
    const auto match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    ReleaseVersion version;
    version.m_numbers = QVersionNumber::fromString(match.captured(1)).normalized();
    version.m_preRelease = partsOf(match.captured(2));
    return version;
}

std::weak_ordering ReleaseVersion::operator<=>(const ReleaseVersion &other) const
{
    if (const int numbers = QVersionNumber::compare(m_numbers, other.m_numbers); numbers != 0)
        return numbers <=> 0;
    if (isPreRelease() != other.isPreRelease())
        return isPreRelease() ? std::weak_ordering::less : std::weak_ordering::greater;
    return std::lexicographical_compare_three_way(m_preRelease.begin(), m_preRelease.end(),
                                                  other.m_preRelease.begin(), other.m_preRelease.end(),
                                                  comparedParts);
}
