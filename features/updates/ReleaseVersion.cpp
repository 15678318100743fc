#include "ReleaseVersion.h"

#include <QRegularExpression>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxLength = 64;
constexpr int MaxDigits = 9;

/// Numbers get leading zeros, so that "2" sorts before "10". Numbers sort before words.
std::vector<std::string> partsOf(const QString &preRelease)
{
    static const QRegularExpression part(u"[0-9]{1,9}|[a-z]+"_s);
    std::vector<std::string> parts;
    for (auto match = part.globalMatch(preRelease.toLower()); match.hasNext();) {
        const QString text = match.next().captured();
        parts.push_back((text.front().isDigit() ? text.rightJustified(MaxDigits, u'0') : text).toStdString());
    }
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
    const auto numbers = QVersionNumber::fromString(match.captured(1)).normalized().segments();
    ReleaseVersion version;
    version.m_numbers.assign(numbers.begin(), numbers.end());
    version.m_isRelease = match.captured(2).isEmpty();
    version.m_preRelease = partsOf(match.captured(2));
    return version;
}
