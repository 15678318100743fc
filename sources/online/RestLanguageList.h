#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <optional>

/// The languages of the service: its own list, or the built-in one. A plain value.
class RestLanguageList final
{
public:
    /// The built-in languages.
    RestLanguageList() = default;
    /// Parses an answer of "/infos/languages"; none for any other answer and for a list so short that it
    /// would prevent searches.
    static std::optional<RestLanguageList> read(const QByteArray &body);

    /// The service's code for the family's three letters; empty for an unknown language.
    QString codeFor(const QString &threeLetters) const;

    bool operator==(const RestLanguageList &) const = default;

private:
    QSet<QString> m_codes; // empty for the built-in list
};
