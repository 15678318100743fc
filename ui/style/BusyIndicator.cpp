#include "BusyIndicator.h"
#include "ChromeColors.h"

#include "Appearance.h"
#include <base/LocalizedString.h>

#include <QPainter>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Spokes = 12;
constexpr int StepDurationMs = 80;
constexpr QSize DefaultSize{20, 20};
} // namespace

BusyIndicator::BusyIndicator(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(String::localize(u"Searching"_s));
    connect(&Appearance::shared(), &Appearance::changed, this, &BusyIndicator::followMotionSetting);
}

QSize BusyIndicator::sizeHint() const
{
    return DefaultSize;
}

void BusyIndicator::followMotionSetting()
{
    if (isVisible() && !Appearance::shared().prefersReducedMotion())
        m_timer.start(StepDurationMs, this);
    else
        m_timer.stop();
}

void BusyIndicator::showEvent(QShowEvent *)
{
    followMotionSetting();
}

void BusyIndicator::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

void BusyIndicator::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return QWidget::timerEvent(event);
    m_step = (m_step + 1) % Spokes;
    update();
}

void BusyIndicator::paintEvent(QPaintEvent *)
{
    const qreal side = qMin(width(), height());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    painter.rotate(360.0 / Spokes * m_step);
    QColor color = ChromeColors::of(palette()).secondaryText;
    for (int spoke = 0; spoke < Spokes; ++spoke) {
        color.setAlphaF(static_cast<float>(spoke + 1) / Spokes);
        painter.setPen(QPen(color, side * 0.09, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -side * 0.25), QPointF(0, -side * 0.44));
        painter.rotate(360.0 / Spokes);
    }
}
