#pragma once
#include <QString>

/// The language codes of the REST service. Plain functions over a constant table; any thread.
namespace RestLanguages
{
/// The service's code ("pt-br") for the family's three letters ("pob"); empty for an unknown language.
QString fromThreeLetters(const QString &code);
/// The three letters for the service's code in any case ("pt-BR"); unknown codes are derived from their
/// spelling.
QString toThreeLetters(const QString &code);
} // namespace RestLanguages
