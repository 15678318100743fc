#pragma once
#include "NameWords.h"

#include <QList>
#include <QString>

/// A word of a name: letters and digits between separators.
struct NameToken : WordClass
{
    qsizetype begin = 0; // in the name
    qsizetype end = 0;
    QString word;          // lower case
    int bracket = 0;       // the innermost brackets around it, counted from 1; 0 outside
    int outerBracket = 0;  // the outermost
    bool isSquare = false; // whether those are square brackets, as for groups and file data
    QString known;         // the looked-up text; for two words that make one ("Blu-ray") both, joined
};

/// A name split into words, in one pass. Rules look at these words and at the gaps between them.
class NameTokens final
{
public:
    static constexpr qsizetype MaxCharacters = 1024;
    static constexpr qsizetype MaxTokens = 160;

    explicit NameTokens(const QString &name);

    const QString &name() const { return m_name; }
    qsizetype count() const { return m_tokens.size(); }
    /// The word at `index`; an empty one before the first and behind the last.
    const NameToken &operator[](qsizetype index) const
    {
        return index >= 0 && index < count() ? m_tokens[index] : m_none;
    }

    /// The text between a word and the one before it (for the first word: the beginning of the name); empty
    /// behind the last word.
    QStringView gapBefore(qsizetype index) const;
    /// Whether just this character stands between a word and the one before it.
    bool isJoinedBefore(qsizetype index, char16_t character) const;
    /// Whether a dash with spaces or a bracket divides a word from the one before it.
    bool isDividedBefore(qsizetype index) const;
    /// Whether the word is alone in its brackets.
    bool isAloneInBrackets(qsizetype index) const;

private:
    struct Bracket
    {
        int number = 0;
        int outer = 0;
        bool isSquare = false;
    };
    /// Adds the word, split where a title runs into its season: "Brack1x02" and "BrackS01E02".
    void addWord(qsizetype begin, qsizetype end, const Bracket &bracket);
    void addToken(qsizetype begin, qsizetype end, const Bracket &bracket);
    void classifyPairs();

    QString m_name;
    QList<NameToken> m_tokens;
    const NameToken m_none;
};
