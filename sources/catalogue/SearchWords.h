#pragma once
#include <QStringList>

/// The words of a title or of a typed text, folded so that case, diacritics, width and punctuation do not
/// matter: "Crème_Brûlée's" gives "creme", "brulees". Scripts without spaces (Chinese, Japanese) give one
/// word per character. At most 32 words of at most 40 characters, from the first 1,024 characters. Any
/// thread.
QStringList searchWords(const QString &text);
