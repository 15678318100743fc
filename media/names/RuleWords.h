#pragma once
#include <QString>
#include <algorithm>
#include <initializer_list>
#include <optional>

/// Reads one word from left to right: "s01e02" is a letter, a number, a letter, a number.
class WordReader final
{
public:
    explicit WordReader(QStringView word) : m_rest(word) {}

    bool atEnd() const { return m_rest.isEmpty(); }
    /// Consumes `text` if the word continues with it.
    bool take(QLatin1StringView text)
    {
        if (m_rest.size() < text.size() || !std::equal(text.begin(), text.end(), m_rest.utf16()))
            return false;
        m_rest = m_rest.mid(text.size());
        return true;
    }
    /// Consumes the first of the texts with which the word continues.
    bool takeAny(std::initializer_list<QLatin1StringView> texts)
    {
        return std::any_of(texts.begin(), texts.end(), [this](QLatin1StringView text) { return take(text); });
    }
    /// Consumes the following digits if their number is within the limits.
    std::optional<int> number(qsizetype maxDigits, qsizetype minDigits = 1)
    {
        qsizetype digits = 0;
        while (digits < m_rest.size() && m_rest[digits] >= u'0' && m_rest[digits] <= u'9')
            ++digits;
        if (digits < minDigits || digits > maxDigits)
            return std::nullopt;
        const int value = m_rest.left(digits).toInt();
        m_rest = m_rest.mid(digits);
        return value;
    }
    /// The number behind one of the marks, which are tried in order.
    std::optional<int> numberAfter(std::initializer_list<QLatin1StringView> marks, qsizetype maxDigits)
    {
        return takeAny(marks) ? number(maxDigits) : std::nullopt;
    }

private:
    QStringView m_rest;
};

/// Words that several names have in common, by what they say.
enum class WordList
{
    Season,
    Episode,
    Range, // between the ends of a range: "215 to 220"
    Month, // an English name or its first three letters
    End,   // the last episode
    Complete,
    Collection,
    Cut,
    Publication, // how an anime was published
    TopLevelDomain
};

// All functions take a word in lower case.

bool isListed(const QString &word, WordList list);
/// The number when the word is one, of at most `maxDigits` digits.
std::optional<int> wholeNumber(const QString &word, qsizetype maxDigits);
/// The number of a word like "07" or "07v2", where a version may follow.
std::optional<int> versionedNumber(const QString &word);
/// The number of a word that counts episodes in Chinese or Japanese: "第12話", "12集".
std::optional<int> countedNumber(const QString &word);
/// The number of a word that counts seasons: "第2季", "第二季", "2期", "시즌2".
std::optional<int> countedSeason(const QString &word);
/// A number in digits, as a word from "one" to "twelve" or as a Roman numeral up to twelve.
std::optional<int> writtenNumber(const QString &word);
/// A year in which films were made.
bool isYear(const QString &word);
/// Whether a word has Chinese characters or Japanese ones.
bool isEastAsian(const QString &word);
