#pragma once
#include <QAbstractButton>

/// A round button of the title bar. Tab reaches it after the content; a click does not focus it.
class TitleBarButton final : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Glyph
    {
        Minimize,
        Maximize,
        Restore,
        Close
    };

    static constexpr int Diameter = 22;

    TitleBarButton(Glyph glyph, QWidget *parent);

    /// Sets the glyph and the localised accessible name for it.
    void setGlyph(Glyph glyph);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawGlyph(QPainter &painter) const;

    Glyph m_glyph;
};
