#include "AttributedText.h"

#include <QFont>
#include <QTextCursor>
#include <QTextDocument>

namespace
{
QFont scaled(const QFont &base, double factor)
{
    QFont font = base;
    if (base.pointSizeF() > 0)
        font.setPointSizeF(base.pointSizeF() * factor);
    else // a desktop that gives its font in pixels
        font.setPixelSize(qMax(1, qRound(base.pixelSize() * factor)));
    return font;
}

QTextCharFormat formatFor(const AttributedText::Attributes &attributes, const QFont &base)
{
    QFont font = scaled(base, attributes.size / AttributedText::NormalSize);
    font.setBold(attributes.bold);
    font.setItalic(attributes.italic);
    QTextCharFormat format;
    format.setFont(font);
    if (attributes.foreground)
        format.setForeground(*attributes.foreground);
    if (!attributes.link.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(attributes.link.toString(QUrl::FullyEncoded));
        format.setFontUnderline(true);
    }
    return format;
}
} // namespace

QString AttributedText::text() const
{
    QString all;
    for (const Run &run : m_runs)
        all += run.text;
    return all;
}

void AttributedText::append(const QString &text, const Attributes &attributes)
{
    if (text.isEmpty())
        return;
    if (!m_runs.isEmpty() && m_runs.last().attributes == attributes)
        m_runs.last().text += text;
    else
        m_runs += Run{text, attributes};
}

void AttributedText::setForegroundColor(const std::optional<QColor> &color)
{
    for (Run &run : m_runs)
        run.attributes.foreground = color;
}

void AttributedText::writeTo(QTextDocument &document, const QFont &base) const
{
    document.clear();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (const Run &run : m_runs)
        cursor.insertText(run.text, formatFor(run.attributes, base));
    cursor.endEditBlock();
}
