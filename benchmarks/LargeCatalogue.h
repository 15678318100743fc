#pragma once
#include <QString>
#include <QStringList>
#include <random>

/// A catalogue of invented films and series, the same at every run: titles of one to five words of which few
/// are frequent and most are rare, in many languages. Made once and kept beside the program.
class LargeCatalogue final
{
public:
    /// Makes it where it is not there yet, which takes some minutes for millions of rows.
    explicit LargeCatalogue(int rows);

    QString path() const { return m_path; }
    int films() const { return m_films; }
    /// The title of a film, as its number gives it.
    static QString titleOf(int film);
    /// What the catalogue holds for the video of a film.
    static QString hashOf(int film);
    static quint64 sizeOf(int film);
    /// Three words as somebody might type them: of one title in any order, the last sometimes only begun, one
    /// sometimes wrong.
    static QString threeWords(int film, std::mt19937 &chance);
    /// One of the languages, frequent ones more often.
    static QString languageOf(std::mt19937 &chance);

private:
    void make(int rows) const;

    QString m_path;
    int m_films;
};
