#pragma once
#include <QString>

/// The film database's language tag ("pt-BR") for a stored two-letter code ("pb"); "en-US" for a language
/// that it has no tag for, and for none. Any thread.
QString filmLanguage(const QString &twoLetterCode);
