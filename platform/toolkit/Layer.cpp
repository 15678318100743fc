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

/// Takes away what lies outside the rounded corners. A clip path would leave them jagged.
void cutCorners(QPainter &painter, const QRectF &bounds, qreal radius)
{
    QPainterPath outside;
    outside.setFillRule(Qt::OddEvenFill);
    outside.addRect(bounds.adjusted(-1, -1, 1, 1));
    outside.addRoundedRect(bounds, radius, radius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setOpacity(1);
    painter.fillPath(outside, Qt::black);
}
} // namespace

void Layer::setContents(const std::optional<Image> &contents)
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

void Layer::setContentsGravity(ContentsGravity gravity)
{
    m_gravity = gravity;
    Q_EMIT needsDisplay();
}

void Layer::setCornerRadius(qreal points)
{
    m_cornerRadius = points;
    Q_EMIT needsDisplay();
}

void Layer::setMasksToBounds(bool masks)
{
    m_masksToBounds = masks;
    Q_EMIT needsDisplay();
}

void Layer::addAnimation(const Transition &transition, const QString &key)
{
    m_animations.insert(key, transition);
}

std::optional<Transition> Layer::animation(const QString &key) const
{
    const auto found = m_animations.constFind(key);
    return found == m_animations.constEnd() ? std::nullopt : std::optional(*found);
}

qreal Layer::fadeProgress() const
{
    return m_progress;
}

void Layer::beginFade(const Transition &transition)
{
    // A fade that is interrupted goes on from the mixture that is seen.
    for (Outgoing &outgoing : m_outgoing)
        outgoing.opacity *= 1 - m_progress;
    if (m_contents)
        m_outgoing.append({*m_contents, m_progress});
    m_outgoing.removeIf([](const Outgoing &outgoing) { return outgoing.opacity < VisibleOpacity; });

    delete m_fade;
    m_fade = new QVariantAnimation(this);
    m_fade->setStartValue(qreal(0));
    m_fade->setEndValue(qreal(1));
    m_fade->setDuration(int(transition.duration.count()));
    m_fade->setEasingCurve(easingCurve(transition.timingFunction));
    m_progress = 0;
    connect(m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_progress = value.toReal();
        Q_EMIT needsDisplay();
    });
    connect(m_fade, &QVariantAnimation::finished, this, [this] {
        endFade();
        Q_EMIT needsDisplay();
    });
    m_fade->start();
}

void Layer::endFade()
{
    if (m_fade) {
        m_fade->disconnect(this);
        m_fade->stop();
        m_fade->deleteLater();
        m_fade = nullptr;
    }
    m_outgoing.clear();
    m_progress = 1;
}

void Layer::draw(QPainter &painter, const QRectF &bounds) const
{
    if (bounds.isEmpty())
        return;
    const bool rounded = m_masksToBounds && m_cornerRadius > 0;
    if (rounded || m_fade)
        painter.drawImage(bounds.topLeft(), composed(bounds.size(), painter.device()->devicePixelRatioF()));
    else if (m_contents)
        drawImage(painter, *m_contents, bounds, m_gravity);
}

QImage Layer::composed(const QSizeF &size, qreal devicePixelRatio) const
{
    QImage image((size * devicePixelRatio).toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF bounds(QPointF(), size);
    // Adding the parts up keeps two opaque pictures opaque on the way from one to the other.
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    for (const Outgoing &outgoing : m_outgoing) {
        painter.setOpacity(outgoing.opacity * (1 - m_progress));
        drawImage(painter, outgoing.image, bounds, m_gravity);
    }
    painter.setOpacity(m_progress);
    if (m_contents)
        drawImage(painter, *m_contents, bounds, m_gravity);
    if (m_masksToBounds && m_cornerRadius > 0)
        cutCorners(painter, bounds, m_cornerRadius);
    return image;
}
