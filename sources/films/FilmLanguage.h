#pragma once
#include <QString>

/// The film database's language tag ("pt-BR") for a stored two-letter code ("pb"); "en-US" for none and for a
/// language without a tag. Any thread.
QString filmLanguage(const QString &twoLetterCode);
