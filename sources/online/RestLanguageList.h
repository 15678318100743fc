#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <optional>

/// The languages that the service has: those it names itself, or the ones known here where it has not said. A
/// plain value.
class RestLanguageList final
{
public:
    /// The ones known here.
    RestLanguageList() = default;
    /// What an answer of "/infos/languages" names; nothing for any other answer, and for one so short that it
    /// would only keep people from searching.
    static std::optional<RestLanguageList> read(const QByteArray &body);

    /// The service's code for the family's three letters; empty for a language it does not have.
    QString codeFor(const QString &threeLetters) const;

    bool operator==(const RestLanguageList &) const = default;

private:
    QSet<QString> m_codes; // empty: the ones known here
};
