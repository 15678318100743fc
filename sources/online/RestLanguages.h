#pragma once
#include <QString>

/// The language codes of the REST service. Plain functions over a constant table; any thread.
namespace RestLanguages
{
/// The service's code ("pt-br") for the family's three letters ("pob"); empty for a language it does not
/// know.
QString fromThreeLetters(const QString &code);
/// The three letters for what the service writes, in any case ("pt-BR"); what it newly has is read by its
/// spelling.
QString toThreeLetters(const QString &code);
} // namespace RestLanguages
