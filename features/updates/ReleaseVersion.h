#pragma once
#include <QStringList>
#include <QVersionNumber>
#include <compare>
#include <optional>

/// A version such as "1.10.2" or "2.0-beta.3": numbers between dots and, for a pre-release, a word that
/// begins with a letter, with or without a hyphen. A part after "+" does not affect the order. Numbers
/// compare as numbers, missing ones are 0, and a pre-release sorts before its release. A plain value.
class ReleaseVersion final
{
public:
    /// None when the text is not a version.
    static std::optional<ReleaseVersion> parse(const QString &text);

    bool isPreRelease() const { return !m_preRelease.isEmpty(); }

    std::weak_ordering operator<=>(const ReleaseVersion &other) const;
    bool operator==(const ReleaseVersion &other) const = default;

private:
    QVersionNumber m_numbers; // without zeros at the end
    QStringList m_preRelease; // in lower case, runs of digits and of letters apart
};
