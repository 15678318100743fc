#pragma once
#include "CharacterWidths.h"

#include <QWidget>

class QPainter;

/// One line of plain text, with an ellipsis where it does not fit. Unless it hugs its text its size does not
/// depend on it, so that changing it costs no layout. The text is never read as markup, and may be anything:
/// line breaks and other control characters show as spaces, and characters that reorder their surroundings do
/// not show at all. Assistive tools read the text itself, or the accessible name where the scene gives one.
/// Main thread only.
class Label : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(TextRole role READ role WRITE setRole)
    Q_PROPERTY(Qt::TextElideMode elideMode READ elideMode WRITE setElideMode)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    /// Whether the label wants to be as wide as its text, and no wider; its layout then follows the text.
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

    /// The text as it is drawn where there is room enough: one line, of bounded length.
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
