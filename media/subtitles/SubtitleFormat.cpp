#include "SubtitleFormat.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
// A film's first cue comes early, so there is no need to search megabytes.
constexpr qsizetype LookedAt = 256LL * 1024;

struct Sign
{
    QString extension;
    QRegularExpression expression;
};

QList<Sign> makeSigns()
{
    const auto sign = [](const QString &extension, const QString &pattern) {
        return Sign{extension, QRegularExpression(pattern, QRegularExpression::MultilineOption |
                                                               QRegularExpression::CaseInsensitiveOption)};
    };
    return {
        sign(u"vtt"_s, u"\\AWEBVTT(?:[ \\t].*)?$[^\\0]*?\\d\\d:\\d\\d\\.\\d{3}[ \\t]+-->"_s),
        sign(u"ass"_s, u"^\\[V4\\+ Styles\\][^\\0]*?^Dialogue:"_s),
        sign(u"ssa"_s, u"^\\[V4 Styles\\][^\\0]*?^Dialogue:"_s),
        sign(u"srt"_s,
             u"^\\s*\\d{1,3}:\\d{1,2}:\\d{1,2}[,.:]\\d{1,3}[ \\t]*-->[ \\t]*\\d{1,3}:\\d{1,2}:\\d{1,2}"_s),
        sign(u"sub"_s, u"^\\{\\d+\\}\\{\\d*\\}."_s),
        sign(u"mpl"_s, u"^\\[\\d+\\]\\[\\d*\\]."_s),
        sign(u"sub"_s, u"^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d,\\d\\d:\\d\\d:\\d\\d\\.\\d\\d"_s),
        sign(u"smi"_s, u"<SAMI[^>]*>[^\\0]*?<SYNC\\s+Start"_s),
        // Only after the first root element: a text of many roots would be searched to its end from each.
        sign(u"dfxp"_s, u"\\A(?>[^\\0]*?<tt(?::\\w+)?[\\s>])[^\\0]*?<(?:tt:)?p[\\s>]"_s),
        sign(u"txt"_s, u"^\\d{1,2}:\\d\\d:\\d\\d[:=]."_s),
    };
}

bool isPage(const QString &text)
{
    static const QRegularExpression start(u"\\A\\s*<(?:!doctype\\s+html|html|head|body)\\b"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    return start.match(text).hasMatch();
}
} // namespace

std::optional<QString> subtitleFormat(const QString &text)
{
    static const QList<Sign> signs = makeSigns();
    // Converts all kinds of line ends.
    const QString start = text.left(LookedAt).replace(u'\r', u'\n');
    if (isPage(start))
        return std::nullopt;
    for (const Sign &sign : signs) {
        if (sign.expression.match(start).hasMatch())
            return sign.extension;
    }
    return std::nullopt;
}
