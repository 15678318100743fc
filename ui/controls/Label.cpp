#include "Label.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace
{
// Longer than any window is wide; shaping megabytes of text would block the program.
constexpr qsizetype MaxLineLength = 1000;

/// What assistive tools see: static text that reads as the label's text.
class LabelAccessible final : public QAccessibleWidget
{
public:
    explicit LabelAccessible(ui::Label *label) : QAccessibleWidget(label, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override
    {
        const auto *label = qobject_cast<ui::Label *>(widget());
        if (kind == QAccessible::Name && label && label->accessibleName().isEmpty())
            return label->text();
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *label = qobject_cast<ui::Label *>(object);
    return label ? new LabelAccessible(label) : nullptr;
}

bool reordersText(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool isLineBreakOrControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}
} // namespace

ui::Label::Label(QWidget *parent) : QWidget(parent)
{
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    Q_UNUSED(installed)
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ui::Label::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    m_line = singleLine(text);
    if (m_hugsText)
        updateGeometry();
    update();
    if (isVisible() && QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void ui::Label::setRole(TextRole role)
{
    m_role = role;
    update();
}

void ui::Label::setElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    update();
}

void ui::Label::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

void ui::Label::setHugsText(bool hugs)
{
    m_hugsText = hugs;
    setSizePolicy(hugs ? QSizePolicy::Maximum : QSizePolicy::Preferred, QSizePolicy::Fixed);
    updateGeometry();
}

QString ui::Label::singleLine(const QString &text)
{
    QString line = text;
    if (line.size() > MaxLineLength)
        line = line.left(MaxLineLength / 2) + QChar(0x2026) + line.right(MaxLineLength / 2);
    line.replace(QLatin1String("\r\n"), QLatin1String(" "));
    line.removeIf(reordersText);
    std::replace_if(line.begin(), line.end(), isLineBreakOrControl, QChar::Space);
    return line;
}

void ui::Label::draw(QPainter &painter, const QRect &rect, const QPalette &palette) const
{
    if (m_line.isEmpty() || rect.isEmpty())
        return;
    painter.setFont(font());
    painter.setPen(
        palette.color(m_role == TextRole::Primary ? QPalette::WindowText : QPalette::PlaceholderText));
    // Alignment follows the interface's reading direction, not the text's.
    const auto alignment = QStyle::visualAlignment(layoutDirection(), m_alignment) | Qt::AlignAbsolute;
    painter.drawText(rect, int(alignment) | Qt::TextSingleLine, drawnLine(rect.width()));
}

QString ui::Label::drawnLine(int width) const
{
    // Skip eliding, which shapes the text a second time and takes half the time of a row.
    if (m_widths.surelyFits(m_line, font(), width))
        return m_line;
    return QFontMetrics(font()).elidedText(m_line, m_elideMode, width);
}

QSize ui::Label::sizeHint() const
{
    const int width = m_hugsText ? fontMetrics().horizontalAdvance(m_line) + 1 : minimumSizeHint().width();
    return {width, fontMetrics().height()};
}

QSize ui::Label::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, fontMetrics().height()};
}

void ui::Label::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    draw(painter, rect(), palette());
}
