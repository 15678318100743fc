#pragma once
#include <QToolButton>

/// A flat button that shows one of the bundle's pictures in the colour of its text, so that it follows light
/// and dark.
class GlyphButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(QString glyph READ glyph WRITE setGlyph)

public:
    explicit GlyphButton(QWidget *parent = nullptr);

    QString glyph() const { return m_glyph; }
    void setGlyph(const QString &name);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_glyph;
};
