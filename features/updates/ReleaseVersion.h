#pragma once
#include <QString>
#include <compare>
#include <optional>
#include <string>
#include <vector>

/// A version such as "1.10.2" or "2.0-beta.3": numbers between dots and, for a pre-release, a word that
/// begins with a letter, with or without a hyphen. A part after "+" does not affect the order. Numbers
/// compare as numbers, missing ones are 0, and a pre-release sorts before its release. A plain value.
class ReleaseVersion final
{
public:
    /// None when the text is not a version.
    static std::optional<ReleaseVersion> parse(const QString &text);

    bool isPreRelease() const { return !m_isRelease; }
    auto operator<=>(const ReleaseVersion &other) const = default;

private:
    // Compared in this order.
    std::vector<int> m_numbers; // without zeros at the end
    bool m_isRelease = true;
    std::vector<std::string> m_preRelease; // words in lower case and numbers of a fixed width, apart
};
