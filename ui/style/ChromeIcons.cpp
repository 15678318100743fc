#include "ChromeIcons.h"
#include "ChromeColors.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace
{
/// The brushes of an icon, in a coordinate system of 16 × 16 units.
struct Brushes
{
    ChromeColors colors;
    QColor ink; // of line drawings
};
using Drawing = void (*)(QPainter &painter, const Brushes &brushes);

constexpr qreal Unit = 16;
constexpr qreal LineWidth = 1.4;
constexpr QColor Amber(0xf2, 0xa3, 0x1b);
constexpr QColor DarkInk(0x33, 0x24, 0x05);

void setLine(QPainter &painter, const QColor &color, qreal width = LineWidth)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void setFill(QPainter &painter, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
}

void drawClear(QPainter &painter, const Brushes &brushes)
{
    setFill(painter, brushes.ink);
    painter.drawEllipse(QPointF(8, 8), 8, 8);
    setLine(painter, brushes.colors.field);
    painter.drawLine(QPointF(5.4, 5.4), QPointF(10.6, 10.6));
    painter.drawLine(QPointF(10.6, 5.4), QPointF(5.4, 10.6));
}

void drawWarning(QPainter &painter, const Brushes &)
{
    // The line rounds the corners.
    painter.setPen(QPen(Amber, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Amber);
    painter.drawPolygon(QPolygonF({{8, 2.6}, {14.4, 13.6}, {1.6, 13.6}}));
    setLine(painter, DarkInk, 1.5);
    painter.drawLine(QPointF(8, 6.2), QPointF(8, 9.8));
    setFill(painter, DarkInk);
    painter.drawEllipse(QPointF(8, 12.3), 0.95, 0.95);
}

void drawQuestion(QPainter &painter, const Brushes &brushes)
{
    setFill(painter, brushes.colors.accent);
    painter.drawEllipse(QPointF(8, 8), 7.5, 7.5);
    setLine(painter, brushes.colors.accentText, 1.5);
    QPainterPath hook(QPointF(5.9, 6.1));
    hook.cubicTo(5.9, 3.4, 10.1, 3.4, 10.1, 6.1);
    hook.cubicTo(10.1, 7.7, 8, 7.8, 8, 9.4);
    painter.drawPath(hook);
    setFill(painter, brushes.colors.accentText);
    painter.drawEllipse(QPointF(8, 12), 0.95, 0.95);
}

void drawFolder(QPainter &painter, const Brushes &brushes)
{
    QPainterPath back;
    back.addRoundedRect(QRectF(1.5, 2.6, 6, 5), 1.2, 1.2);
    back.addRoundedRect(QRectF(1.5, 4, 13, 8), 1.4, 1.4);
    back.setFillRule(Qt::WindingFill);
    setFill(painter, brushes.colors.accent.darker(120));
    painter.drawPath(back);
    setFill(painter, brushes.colors.accent);
    painter.drawRoundedRect(QRectF(1.5, 5.6, 13, 8), 1.4, 1.4);
}

void drawFile(QPainter &painter, const Brushes &brushes)
{
    QPainterPath sheet(QPointF(3.5, 2.6));
    sheet.quadTo(3.5, 1.5, 4.6, 1.5);
    sheet.lineTo(9.2, 1.5);
    sheet.lineTo(12.5, 4.8);
    sheet.lineTo(12.5, 13.4);
    sheet.quadTo(12.5, 14.5, 11.4, 14.5);
    sheet.lineTo(4.6, 14.5);
    sheet.quadTo(3.5, 14.5, 3.5, 13.4);
    sheet.closeSubpath();
    painter.setPen(QPen(brushes.ink, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(brushes.colors.field);
    painter.drawPath(sheet);
    painter.drawPolyline(QPolygonF({{9.2, 1.5}, {9.2, 4.8}, {12.5, 4.8}}));
}

void drawComputer(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawRoundedRect(QRectF(1.7, 2.7, 12.6, 8.3), 1.4, 1.4);
    painter.drawLine(QPointF(8, 11), QPointF(8, 13.3));
    painter.drawLine(QPointF(5, 13.3), QPointF(11, 13.3));
}

void drawDrive(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawRoundedRect(QRectF(1.7, 4.2, 12.6, 7.6), 1.6, 1.6);
    setFill(painter, brushes.ink);
    painter.drawEllipse(QPointF(11.4, 8), 0.95, 0.95);
}

void drawBack(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawLine(QPointF(3, 8), QPointF(13, 8));
    painter.drawPolyline(QPolygonF({{7, 4}, {3, 8}, {7, 12}}));
}

void drawForward(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawLine(QPointF(3, 8), QPointF(13, 8));
    painter.drawPolyline(QPolygonF({{9, 4}, {13, 8}, {9, 12}}));
}

void drawToParent(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawLine(QPointF(8, 3), QPointF(8, 13));
    painter.drawPolyline(QPolygonF({{4, 7}, {8, 3}, {12, 7}}));
}

void drawNewFolder(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    painter.drawPolyline(
        QPolygonF({{8, 13}, {1.8, 13}, {1.8, 3.2}, {6, 3.2}, {7.6, 5}, {14.2, 5}, {14.2, 8}}));
    painter.drawLine(QPointF(12.2, 10), QPointF(12.2, 14.4));
    painter.drawLine(QPointF(10, 12.2), QPointF(14.4, 12.2));
}

void drawListView(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    for (const qreal x : {2.5, 9.5})
        for (const qreal y : {2.5, 9.5})
            painter.drawRoundedRect(QRectF(x, y, 4, 4), 1, 1);
}

void drawDetailedView(QPainter &painter, const Brushes &brushes)
{
    setLine(painter, brushes.ink);
    for (const qreal y : {4.0, 8.0, 12.0}) {
        painter.drawPoint(QPointF(2.7, y));
        painter.drawLine(QPointF(5.5, y), QPointF(13.5, y));
    }
}

Drawing drawingOf(QStyle::StandardPixmap sign)
{
    switch (sign) {
    case QStyle::SP_LineEditClearButton:
        return drawClear;
    case QStyle::SP_MessageBoxWarning:
        return drawWarning;
    case QStyle::SP_MessageBoxQuestion:
        return drawQuestion;
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirClosedIcon:
    case QStyle::SP_DirOpenIcon:
    case QStyle::SP_DirLinkIcon:
    case QStyle::SP_DirHomeIcon:
        return drawFolder;
    case QStyle::SP_FileIcon:
    case QStyle::SP_FileLinkIcon:
        return drawFile;
    case QStyle::SP_ComputerIcon:
        return drawComputer;
    case QStyle::SP_DriveHDIcon:
    case QStyle::SP_DriveNetIcon:
        return drawDrive;
    case QStyle::SP_ArrowBack:
        return drawBack;
    case QStyle::SP_ArrowForward:
        return drawForward;
    case QStyle::SP_FileDialogToParent:
        return drawToParent;
    case QStyle::SP_FileDialogNewFolder:
        return drawNewFolder;
    case QStyle::SP_FileDialogListView:
        return drawListView;
    case QStyle::SP_FileDialogDetailedView:
        return drawDetailedView;
    default:
        return nullptr;
    }
}

QColor inkOf(const ChromeColors &colors, QIcon::Mode mode)
{
    if (mode == QIcon::Disabled)
        return ChromeColors::mixed(colors.window, colors.text, 0.25);
    return mode == QIcon::Active ? colors.text : colors.secondaryText;
}

class ChromeIconEngine final : public QIconEngine
{
public:
    explicit ChromeIconEngine(Drawing drawing) : m_drawing(drawing) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const ChromeColors colors = ChromeColors::of(QGuiApplication::palette());
        const qreal side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / Unit, side / Unit);
        m_drawing(*painter, {colors, inkOf(colors, mode)});
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new ChromeIconEngine(*this); }

private:
    Drawing m_drawing;
};
} // namespace

QIcon makeChromeIcon(QStyle::StandardPixmap sign)
{
    const Drawing drawing = drawingOf(sign);
    return drawing ? QIcon(new ChromeIconEngine(drawing)) : QIcon();
}
