#include "ClearIcon.h"
#include "ChromeColors.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace
{
class ClearIconEngine final : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const ChromeColors colors = ChromeColors::of(QGuiApplication::palette());
        const QPointF center = QRectF(rect).center();
        const qreal unit = rect.height() / 16.0;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(mode == QIcon::Active ? colors.text : colors.secondaryText);
        painter->drawEllipse(center, 8 * unit, 8 * unit);
        painter->setPen(QPen(colors.field, 1.4 * unit, Qt::SolidLine, Qt::RoundCap));
        const qreal arm = 2.6 * unit;
        painter->drawLine(center + QPointF(-arm, -arm), center + QPointF(arm, arm));
        painter->drawLine(center + QPointF(arm, -arm), center + QPointF(-arm, arm));
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

    QIconEngine *clone() const override { return new ClearIconEngine(*this); }
};
} // namespace

QIcon makeClearIcon()
{
    return QIcon(new ClearIconEngine);
}
