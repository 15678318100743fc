#include "Layer.h"
#include "Animator.h"

#include <QPainter>
#include <QPainterPath>

namespace
{
constexpr qreal VisibleOpacity = 0.02;

QImage transparentImage(const QSize &pixels, qreal devicePixelRatio)
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}

/// Clears the area outside the rounded corners. A clip path would leave them jagged.
void cutCorners(QImage &image, qreal radius)
{
    const QRectF bounds(QPointF(), image.deviceIndependentSize());
    QPainterPath outside;
    outside.setFillRule(Qt::OddEvenFill);
    outside.addRect(bounds.adjusted(-1, -1, 1, 1));
    outside.addRoundedRect(bounds, radius, radius);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
}
} // namespace

ui::Layer::Layer()
{
    m_fade.setStartValue(qreal(0));
    m_fade.setEndValue(qreal(1));
    m_fade.setEasingCurve(Animator::easeInEaseOut());
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_progress = value.toReal();
        Q_EMIT needsDisplay();
    });
    connect(&m_fade, &QVariantAnimation::finished, this, [this] {
        endFade();
        Q_EMIT needsDisplay();
    });
}

void ui::Layer::setContents(const std::optional<ui::Image> &contents)
{
    if (contents == m_contents)
        return;
    if (m_transition.count() > 0 && !Animator::prefersReducedMotion())
        beginFade();
    else
        endFade();
    m_contents = contents;
    Q_EMIT needsDisplay();
}

void ui::Layer::setContentsGravity(ContentsGravity gravity)
{
    m_gravity = gravity;
    Q_EMIT needsDisplay();
}

void ui::Layer::setCornerRadius(qreal points)
{
    m_cornerRadius = points;
    Q_EMIT needsDisplay();
}

void ui::Layer::setMasksToBounds(bool masks)
{
    m_masksToBounds = masks;
    Q_EMIT needsDisplay();
}

void ui::Layer::beginFade()
{
    // An interrupted fade continues from the visible mixture.
    for (Outgoing &outgoing : m_outgoing)
        outgoing.opacity *= 1 - m_progress;
    if (m_contents)
        m_outgoing.append({*m_contents, m_progress});
    m_outgoing.removeIf([](const Outgoing &outgoing) { return outgoing.opacity < VisibleOpacity; });

    m_fade.stop();
    m_fade.setDuration(int(m_transition.count()));
    m_progress = 0;
    m_fade.start();
}

void ui::Layer::endFade()
{
    m_fade.stop();
    m_outgoing.clear();
    m_progress = 1;
}

void ui::Layer::draw(QPainter &painter, const QRectF &bounds) const
{
    if (bounds.isEmpty())
        return;
    const bool rounded = m_masksToBounds && m_cornerRadius > 0;
    if (rounded || m_progress < 1)
        painter.drawImage(bounds.topLeft(), composed(bounds.size(), painter.device()->devicePixelRatioF()));
    else if (m_contents)
        m_contents->draw(painter, bounds, m_gravity);
}

void ui::Layer::add(QImage &mixture, const ui::Image &image, qreal opacity) const
{
    QImage part = transparentImage(mixture.size(), mixture.devicePixelRatio());
    QPainter drawing(&part);
    drawing.setOpacity(opacity);
    image.draw(drawing, QRectF(QPointF(), mixture.deviceIndependentSize()), m_gravity);
    drawing.end();
    // Adding the parts keeps the mixture of two opaque pictures opaque.
    QPainter adding(&mixture);
    adding.setCompositionMode(QPainter::CompositionMode_Plus);
    adding.drawImage(QPoint(), part);
}

QImage ui::Layer::composed(const QSizeF &size, qreal devicePixelRatio) const
{
    QImage image = transparentImage((size * devicePixelRatio).toSize().expandedTo({1, 1}), devicePixelRatio);
    for (const Outgoing &outgoing : m_outgoing)
        add(image, outgoing.image, outgoing.opacity * (1 - m_progress));
    if (m_contents)
        add(image, *m_contents, m_progress);
    if (m_masksToBounds && m_cornerRadius > 0)
        cutCorners(image, m_cornerRadius);
    return image;
}
