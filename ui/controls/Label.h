#pragma once
#include "CharacterWidths.h"

#include <QWidget>

class QPainter;

namespace ui
{
/// One line of plain text, elided when it does not fit. Unless it hugs its text, its size does not depend on
/// the text, so that changing it causes no layout. The text is never markup: line breaks and other control
/// characters show as spaces, and characters that reorder their surroundings are not shown. Assistive tools
/// read the text itself, or the scene's accessible name. Main thread only.
class Label : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(TextRole role READ role WRITE setRole)
    Q_PROPERTY(Qt::TextElideMode elideMode READ elideMode WRITE setElideMode)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    /// Whether the label's width follows its text.
    Q_PROPERTY(bool hugsText READ hugsText WRITE setHugsText)

public:
    enum class TextRole
    {
        Primary,
        Secondary
    };
    Q_ENUM(TextRole)

    explicit Label(QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);
    TextRole role() const { return m_role; }
    void setRole(TextRole role);
    Qt::TextElideMode elideMode() const { return m_elideMode; }
    void setElideMode(Qt::TextElideMode mode);
    Qt::Alignment alignment() const { return m_alignment; }
    void setAlignment(Qt::Alignment alignment);
    bool hugsText() const { return m_hugsText; }
    void setHugsText(bool hugs);

    /// The text as drawn when there is room: one line, of bounded length.
    static QString singleLine(const QString &text);
    /// Draws the text into `rect` with this label's font and the colours of `palette`.
    void draw(QPainter &painter, const QRect &rect, const QPalette &palette) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString drawnLine(int width) const;

    QString m_text;
    QString m_line; // the text in one line
    bool m_hugsText = false;
    TextRole m_role = TextRole::Primary;
    Qt::TextElideMode m_elideMode = Qt::ElideRight;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    mutable CharacterWidths m_widths;
};
} // namespace ui
