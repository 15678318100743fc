#include "Layer.h"
#include "Animator.h"
#include "EasingCurves.h"
#include "ImageDrawing.h"

#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>

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

void ui::Layer::setContents(const std::optional<ui::Image> &contents)
{
    if (contents == m_contents)
        return;
    const auto transition = animation(QLatin1String(TransitionKey));
    if (transition && transition->duration.count() > 0 && !Animator::prefersReducedMotion())
        beginFade(*transition);
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

void ui::Layer::addAnimation(const Transition &transition, const QString &key)
{
    m_animations.insert(key, transition);
}

std::optional<Transition> ui::Layer::animation(const QString &key) const
{
    const auto found = m_animations.constFind(key);
    return found == m_animations.constEnd() ? std::nullopt : std::optional(*found);
}

qreal ui::Layer::fadeProgress() const
{
    return m_progress;
}

void ui::Layer::beginFade(const Transition &transition)
{
    // An interrupted fade continues from the visible mixture.
    for (Outgoing &outgoing : m_outgoing)
        outgoing.opacity *= 1 - m_progress;
    if (m_contents)
        m_outgoing.append({*m_contents, m_progress});
    m_outgoing.removeIf([](const Outgoing &outgoing) { return outgoing.opacity < VisibleOpacity; });

    if (!m_fade)
        makeFade();
    m_fade->stop();
    m_fade->setDuration(int(transition.duration.count()));
    m_fade->setEasingCurve(easingCurve(transition.timingFunction));
    m_progress = 0;
    m_fade->start();
}

void ui::Layer::makeFade()
{
    m_fade = new QVariantAnimation(this);
    m_fade->setStartValue(qreal(0));
    m_fade->setEndValue(qreal(1));
    connect(m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_progress = value.toReal();
        Q_EMIT needsDisplay();
    });
    connect(m_fade, &QVariantAnimation::finished, this, [this] {
        endFade();
        Q_EMIT needsDisplay();
    });
}

void ui::Layer::endFade()
{
    if (m_fade)
        m_fade->stop();
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
        drawImage(painter, *m_contents, bounds, m_gravity);
}

void ui::Layer::add(QImage &mixture, const ui::Image &image, qreal opacity) const
{
    QImage part = transparentImage(mixture.size(), mixture.devicePixelRatio());
    QPainter drawing(&part);
    drawing.setOpacity(opacity);
    drawImage(drawing, image, QRectF(QPointF(), mixture.deviceIndependentSize()), m_gravity);
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
