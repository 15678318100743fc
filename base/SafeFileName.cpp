#include "SafeFileName.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxNameBytes = 200;
constexpr qsizetype MaxExtensionLength = 8;

bool isHarmless(QChar c)
{
    const QChar::Category category = c.category();
    return category != QChar::Other_Control && category != QChar::Other_Format &&
           category != QChar::Separator_Line && category != QChar::Separator_Paragraph &&
           c != QChar::ReplacementCharacter;
}

/// The last component after either kind of separator, without characters that are unsafe in a file name.
QString plainName(const QString &text)
{
    const qsizetype separator = std::max(text.lastIndexOf(u'/'), text.lastIndexOf(u'\\'));
    QString name;
    // toUcs4 replaces unpaired surrogates.
    for (const char32_t c : text.mid(separator + 1).toUcs4()) {
        const QString character = QString::fromUcs4(&c, 1);
        if (character.size() > 1 || isHarmless(character.front()))
            name += character;
    }
    while (!name.isEmpty() && (name.front() == u'.' || name.front().isSpace()))
        name.remove(0, 1);
    while (!name.isEmpty() && (name.back() == u'.' || name.back().isSpace()))
        name.chop(1);
    return name;
}

/// Shortens the name to whole characters within `maxBytes` of UTF-8.
void shorten(QString &name, qsizetype maxBytes)
{
    while (name.toUtf8().size() > maxBytes)
        name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
}
} // namespace

QString safeExtension(const QString &format)
{
    QString extension;
    for (const QChar c : format.toLower()) {
        if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9'))
            extension += c;
    }
    return extension.isEmpty() ? u"txt"_s : extension.left(MaxExtensionLength);
}

QString safeFileName(const QString &text, const QString &extension)
{
    const QString ending = u'.' + safeExtension(extension);
    QString name = plainName(text.left(4 * MaxNameBytes));
    if (name.endsWith(ending, Qt::CaseInsensitive))
        name.chop(ending.size());
    shorten(name, MaxNameBytes - ending.size());
    if (name.isEmpty())
        name = u"subtitle"_s;
    return name + ending;
}
