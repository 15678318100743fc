#pragma once
#include <QProxyStyle>

/// The style of the program's controls: rounded and flat, drawn from the palette alone, so that it follows
/// light, dark, accent colour and scale factor. Everything else is drawn by Fusion.
///
/// A control's dynamic property `role` selects another look: "accent" (push button filled with the accent
/// colour), "tab" (push button that is flat until checked), "pill" (small round combo box or button for the
/// title bar), "menu" (tool button with the menu sign) and "box" (frame filled a little darker than the
/// window).
class ChromeStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    ChromeStyle();

    void polish(QWidget *widget) override;
    using QProxyStyle::polish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option, const QWidget *widget) const override;
};
