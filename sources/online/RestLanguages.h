#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <optional>

/// The languages of the service: its own list, or the built-in one. A plain value; any thread.
class RestLanguages final
{
public:
    /// The built-in languages.
    RestLanguages() = default;
    /// Parses an answer of "/infos/languages"; none for any other answer and for a list so short that it
    /// would prevent searches.
    static std::optional<RestLanguages> read(const QByteArray &body);

    /// The service's code ("pt-br") for the family's three letters ("pob"); empty for an unknown language.
    QString codeFor(const QString &threeLetters) const;
    /// The three letters for the service's code in any case ("pt-BR"); unknown codes are derived from their
    /// spelling.
    static QString toThreeLetters(const QString &code);

    bool operator==(const RestLanguages &) const = default;

private:
    QSet<QString> m_codes; // empty for the built-in list
};
