#pragma once
#include <QIcon>
#include <QPolygonF>
#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionFrame;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionToolButton;

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
/// Draws a line with round ends through points relative to `center`.
void drawLines(QPainter &painter, const QPointF &center, const QPolygonF &line, const QColor &color,
               qreal width);
/// A small filled triangle around `center` that points down.
void drawDownArrow(QPainter &painter, const QPointF &center, qreal width, const QColor &color);
bool isEnabled(const QStyleOption &option);
/// Whether a control shows its focus: only when the keyboard is used.
bool showsFocus(const QStyleOption &option);

constexpr int FieldRadius = 8;
constexpr int ButtonRadius = 7;
constexpr int FocusRingWidth = 2;

void drawBox(QPainter &painter, const QStyleOption &option);
void drawPlainFrame(QPainter &painter, const QStyleOption &option);
/// Behind a section of a list's column titles, and beside the last.
void drawHeaderGround(QPainter &painter, const QStyleOption &option);
void drawScrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider);
QRect scrollBarSlider(const QStyleOptionSlider &option);

void drawLineEdit(QPainter &painter, const QStyleOptionFrame &option);
void drawCheckBoxIndicator(QPainter &painter, const QStyleOption &option);
void drawComboBox(QPainter &painter, const QStyleOptionComboBox &option, Role role);
void drawComboBoxLabel(QPainter &painter, const QStyleOptionComboBox &option, Role role, const QStyle &style);
QRect comboBoxTextRect(const QStyleOptionComboBox &option, Role role);

void drawPushButton(QPainter &painter, const QStyleOptionButton &option, Role role);
void drawPushButtonLabel(QPainter &painter, const QStyleOptionButton &option, Role role, const QStyle &style);
void drawToolButton(QPainter &painter, const QStyleOptionToolButton &option, Role role, const QStyle &style);

void drawMenuPanel(QPainter &painter, const QStyleOption &option, bool rounded);
void drawMenuItem(QPainter &painter, const QStyleOptionMenuItem &option, const QStyle &style);
QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents);

/// An icon of the stock dialogs in the application's colours; null for signs that have no drawing here.
QIcon dialogIcon(QStyle::StandardPixmap sign);
} // namespace ChromePainting
