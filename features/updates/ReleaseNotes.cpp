#include "ReleaseNotes.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxLength = 20'000;
constexpr qsizetype MaxRead = 65'536;

/// Loads nothing that the markup refers to.
class ClosedDocument final : public QTextDocument
{
    QVariant loadResource(int, const QUrl &) override { return {}; }
};

QString withoutMarkup(QString text)
{
    static const QRegularExpression program(u"<(script|style)\\b.*?(?:</\\1[^>]*>|\\z)"_s,
                                            QRegularExpression::CaseInsensitiveOption |
                                                QRegularExpression::DotMatchesEverythingOption);
    ClosedDocument document;
    document.setHtml(text.remove(program));
    QString lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().topMargin() > 0)
            lines += u'\n';
        if (block.textList())
            lines += u"• "_s;
        lines += block.text() + u'\n';
        if (block.blockFormat().bottomMargin() > 0)
            lines += u'\n';
    }
    return lines.replace(QChar::LineSeparator, u'\n').remove(QChar::ObjectReplacementCharacter);
}

bool isControl(QChar sign)
{
    constexpr QStringView directions = u"\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069";
    return (sign.category() == QChar::Other_Control && sign != u'\n' && sign != u'\t') ||
           directions.contains(sign);
}
} // namespace

QString plainReleaseNotes(const QString &notes)
{
    static const QRegularExpression markup(u"</?[A-Za-z][^>]*>"_s);
    static const QRegularExpression emptyLines(u"\\n{3,}"_s);
    QString text = notes.left(MaxRead);
    if (text.contains(markup))
        text = withoutMarkup(text);
    text = text.removeIf(isControl).replace(emptyLines, u"\n\n"_s).trimmed();
    return text.size() > MaxLength ? text.left(MaxLength) + u'…' : text;
}
