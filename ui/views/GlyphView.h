#pragma once
#include <QWidget>

/// Shows one of the bundle's pictures in the colour of secondary text, filling itself.
class GlyphView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString glyph READ glyph WRITE setGlyph)

public:
    explicit GlyphView(QWidget *parent = nullptr);

    QString glyph() const { return m_glyph; }
    void setGlyph(const QString &name);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_glyph;
};
