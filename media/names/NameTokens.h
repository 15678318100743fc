#pragma once
#include "NameWords.h"

#include <QList>
#include <QString>

/// A word of a name: letters and digits between separators.
struct NameToken
{
    qsizetype begin = 0; // in the name
    qsizetype end = 0;
    QString word;          // lower case
    int bracket = 0;       // the innermost pair of brackets around it, counted from 1; 0 outside
    int outerBracket = 0;  // the outermost
    bool isSquare = false; // whether those are no round ones, as groups and file data have them
    QString known;         // the word that was looked up: of two that make one ("Blu-ray") both, joined
    WordClass kind;
};

/// A name cut into words, in one pass. Every rule looks at these words and at what separates them.
class NameTokens final
{
public:
    static constexpr qsizetype MaxCharacters = 1024;
    static constexpr qsizetype MaxTokens = 160;

    explicit NameTokens(const QString &name);

    const QString &name() const { return m_name; }
    qsizetype count() const { return m_tokens.size(); }
    const NameToken &operator[](qsizetype index) const { return m_tokens[index]; }

    /// What stands between a word and the one before it (before the first: what the name begins with).
    QStringView gapBefore(qsizetype index) const;
    /// Whether a dash with room around it, or an opening or closing bracket, divides a word from the one
    /// before it.
    bool isDividedBefore(qsizetype index) const;
    /// Whether nothing but the word stands in its brackets.
    bool isAloneInBrackets(qsizetype index) const;
    bool isSquare(qsizetype index) const { return m_tokens[index].isSquare; }

private:
    struct Bracket
    {
        int number = 0;
        int outer = 0;
        bool isSquare = false;
    };
    /// Adds the word, as two where a title runs into its season: "Brack1x02" and "BrackS01E02".
    void addWord(qsizetype begin, qsizetype end, const Bracket &bracket);
    void addToken(qsizetype begin, qsizetype end, const Bracket &bracket);
    void classify();

    QString m_name;
    QList<NameToken> m_tokens;
};
