#pragma once
#include <QToolButton>

/// A flat button that shows one of the bundle's pictures in the colour of its text, so that it follows light
/// and dark.
class GlyphButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(QString glyph MEMBER m_glyph)

public:
    explicit GlyphButton(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_glyph;
};

/// Shows one of the bundle's pictures in the colour of secondary text, filling itself.
class GlyphView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString glyph MEMBER m_glyph)

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_glyph;
};
