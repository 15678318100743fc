#pragma once
#include <QRect>
#include <QString>

class QColor;
class QPainter;
class QPointF;
class QRectF;
class QStyle;
class QStyleOption;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionFrame;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionToolButton;
class QSize;
class QWidget;

/// The drawing functions of ChromeStyle, one per control. Rectangles and sizes in points.
namespace ChromePainting
{
enum class Role
{
    Plain,
    Accent,
    Tab,
    Pill,
    Menu,
    Link,
    Box
};
Role roleOf(const QWidget *widget);

/// Draws on whole device pixels of any scale: a frame of `width` just inside `rect`.
void strokeRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color, qreal width);
void fillRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color);
/// A small filled triangle around `center` that points down.
void drawDownArrow(QPainter &painter, const QPointF &center, qreal width, const QColor &color);
/// Whether a control shows its focus: only when the keyboard is used.
bool showsFocus(const QStyleOption &option);

constexpr int FieldRadius = 8;
constexpr int ButtonRadius = 7;
constexpr int FocusRingWidth = 2;

void drawLineEdit(QPainter &painter, const QStyleOptionFrame &option);
void drawCheckBoxIndicator(QPainter &painter, const QStyleOption &option);
void drawRadioIndicator(QPainter &painter, const QStyleOption &option);
void drawComboBox(QPainter &painter, const QStyleOptionComboBox &option, Role role);
void drawComboBoxLabel(QPainter &painter, const QStyleOptionComboBox &option, Role role, const QStyle &style);
QRect comboBoxTextRect(const QStyleOptionComboBox &option, Role role);
void drawBox(QPainter &painter, const QStyleOption &option);
void drawPlainFrame(QPainter &painter, const QStyleOption &option);
/// Behind a section of a list's column titles, and beside the last.
void drawHeaderGround(QPainter &painter, const QStyleOption &option);

void drawPushButton(QPainter &painter, const QStyleOptionButton &option, Role role);
void drawPushButtonLabel(QPainter &painter, const QStyleOptionButton &option, Role role, const QStyle &style);
void drawToolButton(QPainter &painter, const QStyleOptionToolButton &option, Role role, const QStyle &style);

void drawMenuPanel(QPainter &painter, const QStyleOption &option, bool rounded);
void drawMenuItem(QPainter &painter, const QStyleOptionMenuItem &option, const QStyle &style);
QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents);

void drawScrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider);
QRect scrollBarSlider(const QStyleOptionSlider &option);
} // namespace ChromePainting
