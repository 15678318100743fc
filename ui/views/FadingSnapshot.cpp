#include "FadingSnapshot.h"
#include "Animator.h"
#include "EasingCurves.h"

#include <QLayout>
#include <QPainter>
#include <QVariantAnimation>

namespace
{
QRect placeInWindow(const QWidget &view)
{
    return {view.mapTo(view.window(), QPoint()), view.size()};
}
} // namespace

FadingSnapshot::Look FadingSnapshot::lookAround(const QWidget &view)
{
    // The layout may give a view that reappears another place among its siblings.
    const QWidget &moving = view.parentWidget()->layout() ? *view.parentWidget() : view;
    const QRect area = placeInWindow(moving).intersected(view.window()->rect());
    return {area, view.window()->grab(area)};
}

void FadingSnapshot::fade(QWidget &view, const Look &before)
{
    if (auto *earlier = running(view)) {
        earlier->m_view = nullptr;
        earlier->hide();
        earlier->deleteLater();
    }
    const QRect place = placeInWindow(view).intersected(before.area);
    if (place.isEmpty())
        return;
    const qreal ratio = before.pixmap.devicePixelRatio();
    const QRectF pixels(QPointF(place.topLeft() - before.area.topLeft()) * ratio,
                        QSizeF(place.size()) * ratio);
    auto *snapshot = new FadingSnapshot(view, before.pixmap.copy(pixels.toAlignedRect()));
    snapshot->setGeometry(place);
    snapshot->show();
    snapshot->raise();
}

FadingSnapshot *FadingSnapshot::running(const QWidget &view)
{
    const auto all = view.window()->findChildren<FadingSnapshot *>(QString(), Qt::FindDirectChildrenOnly);
    for (FadingSnapshot *snapshot : all) {
        if (snapshot->m_view == &view)
            return snapshot;
    }
    return nullptr;
}

FadingSnapshot::FadingSnapshot(QWidget &view, const QPixmap &look)
    : QWidget(view.window()), m_view(&view), m_look(look), m_animation(new QVariantAnimation(this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    connect(&view, &QObject::destroyed, this, &QObject::deleteLater);
    m_animation->setStartValue(qreal(1));
    m_animation->setEndValue(qreal(0));
    m_animation->setDuration(int(Animator::DefaultDuration.count()));
    m_animation->setEasingCurve(easeInEaseOut());
    connect(m_animation, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(m_animation, &QVariantAnimation::finished, this, [this] {
        m_view = nullptr;
        hide();
        deleteLater();
    });
    m_animation->start();
}

void FadingSnapshot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(m_animation->currentValue().toReal());
    painter.drawPixmap(rect(), m_look);
}
