#include "ReleaseNotes.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxLength = 20'000;
constexpr qsizetype MaxRead = 65'536;

/// The end of the element's content with its end tag; the end of the text when there is none.
qsizetype endOfElement(const QString &text, const QString &name, qsizetype from)
{
    const qsizetype end = text.indexOf(u"</"_s + name, from, Qt::CaseInsensitive);
    const qsizetype close = end < 0 ? -1 : text.indexOf(u'>', end);
    return close < 0 ? text.size() : close + 1;
}

QString linesFor(const QString &tag)
{
    static const QStringList breaks{u"br"_s, u"div"_s, u"tr"_s, u"ul"_s, u"ol"_s};
    static const QRegularExpression paragraph(u"\\A(?:/?(?:p|h[1-6]|section|article)|/[uo]l)\\z"_s);
    if (tag == "li"_L1)
        return u"\n• "_s;
    if (breaks.contains(tag))
        return u"\n"_s;
    return paragraph.match(tag).hasMatch() ? u"\n\n"_s : QString();
}

QString withoutTags(const QString &text)
{
    static const QRegularExpression start(u"<(/?[A-Za-z][A-Za-z0-9]*)[^>]*>|<!--.*?-->|<![A-Za-z][^>]*>"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    QString result;
    qsizetype place = 0;
    while (place < text.size()) {
        const auto match = start.match(text, place);
        if (!match.hasMatch())
            break;
        result += QStringView(text).mid(place, match.capturedStart() - place);
        place = match.capturedEnd();
        const QString tag = match.captured(1).toLower();
        if (tag == "script"_L1 || tag == "style"_L1 || tag == "head"_L1)
            place = endOfElement(text, tag, place);
        result += linesFor(tag);
    }
    return result += QStringView(text).mid(place);
}

QString named(const QString &entity)
{
    static const QHash<QString, QString> names{
        {u"amp"_s, u"&"_s},   {u"lt"_s, u"<"_s},    {u"gt"_s, u">"_s},
        {u"quot"_s, u"\""_s}, {u"apos"_s, u"'"_s},  {u"nbsp"_s, u"\u00a0"_s},
        {u"ndash"_s, u"–"_s}, {u"mdash"_s, u"—"_s}, {u"hellip"_s, u"…"_s}};
    return names.value(entity);
}

QString numbered(const QString &digits)
{
    const bool hexadecimal = digits.startsWith(u'x', Qt::CaseInsensitive);
    const char32_t code = hexadecimal ? digits.mid(1).toUInt(nullptr, 16) : digits.toUInt();
    const bool isSign = code > 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
    return isSign ? QString::fromUcs4(&code, 1) : QString();
}

QString withoutEntities(const QString &text)
{
    static const QRegularExpression entity(u"&(?:([a-z]{2,6})|#([0-9]{1,7}|[xX][0-9A-Fa-f]{1,6}));"_s);
    QString result;
    qsizetype place = 0;
    for (auto matches = entity.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        const QString sign =
            match.captured(1).isEmpty() ? numbered(match.captured(2)) : named(match.captured(1));
        result += QStringView(text).mid(place, match.capturedStart() - place);
        result += sign.isEmpty() ? match.captured() : sign;
        place = match.capturedEnd();
    }
    return result += QStringView(text).mid(place);
}

/// Removes control characters and those that change the text direction.
QString withoutControls(QString text)
{
    static const QRegularExpression controls(
        u"[\\x{0}-\\x{8}\\x{b}-\\x{1f}\\x{7f}-\\x{9f}\\x{200e}\\x{200f}\\x{202a}-\\x{202e}\\x{2066}-\\x{2069}]"_s);
    return text.remove(controls);
}
} // namespace

QString plainReleaseNotes(const QString &notes)
{
    static const QRegularExpression markup(u"</?[A-Za-z][^>]*>"_s);
    static const QRegularExpression layout(u"[ \\t\\n]+"_s);
    static const QRegularExpression lineEdges(u"[ \\t]*\\n[ \\t]*"_s);
    static const QRegularExpression emptyLines(u"\\n{3,}"_s);
    QString text = notes.left(MaxRead);
    if (text.contains(markup)) {
        // Line ends in markup are white space.
        text = withoutEntities(withoutTags(text.replace(layout, u" "_s)));
        text.replace(lineEdges, u"\n"_s);
    }
    text = withoutControls(text).replace(emptyLines, u"\n\n"_s).trimmed();
    return text.size() > MaxLength ? text.left(MaxLength) + u'…' : text;
}
