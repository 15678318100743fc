#include "Animator.h"
#include <ui/style/Appearance.h>
#include "LayoutConstraint.h"

#include <QLayout>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace
{
std::optional<bool> reducedMotionForTests;

QRect placeInWindow(const QWidget &view)
{
    return {view.mapTo(view.window(), QPoint()), view.size()};
}

/// An old look that fades out over the present content of a window. It takes no input, no focus and no part
/// in any layout, and deletes itself after the fade or with its view.
class FadingSnapshot final : public QWidget
{
    Q_OBJECT

public:
    FadingSnapshot(QWidget &view, const QPixmap &look);
    /// Takes away an earlier fade of that view.
    static void remove(const QWidget &view);

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setOpacity(m_animation.currentValue().toReal());
        painter.drawPixmap(rect(), m_look);
    }

private:
    void end()
    {
        m_view = nullptr;
        hide();
        deleteLater();
    }

    QPointer<QWidget> m_view;
    QPixmap m_look;
    QVariantAnimation m_animation{this};
};

FadingSnapshot::FadingSnapshot(QWidget &view, const QPixmap &look)
    : QWidget(view.window()), m_view(&view), m_look(look)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    connect(&view, &QObject::destroyed, this, &QObject::deleteLater);
    m_animation.setStartValue(qreal(1));
    m_animation.setEndValue(qreal(0));
    m_animation.setDuration(int(Animator::DefaultDuration.count()));
    m_animation.setEasingCurve(Animator::easeInEaseOut());
    connect(&m_animation, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&m_animation, &QVariantAnimation::finished, this, &FadingSnapshot::end);
    m_animation.start();
}

void FadingSnapshot::remove(const QWidget &view)
{
    const auto all = view.window()->findChildren<FadingSnapshot *>(QString(), Qt::FindDirectChildrenOnly);
    for (FadingSnapshot *snapshot : all) {
        if (snapshot->m_view == &view)
            snapshot->end();
    }
}
} // namespace

void Animator::setHidden(QWidget &view, bool hidden)
{
    if (view.isHidden() == hidden)
        return;
    QWidget *parent = view.parentWidget();
    const bool isOnScreen = parent && parent->isVisible() && !view.isWindow();
    if (!isOnScreen || prefersReducedMotion())
        return view.setHidden(hidden);
    // The layout may give a view that reappears another place among its siblings.
    const QRect area = placeInWindow(parent->layout() ? *parent : view).intersected(view.window()->rect());
    const QPixmap before = view.window()->grab(area);
    // The view changes at once, so that its state is final and a view that fades out takes no more clicks.
    view.setHidden(hidden);
    if (QLayout *layout = parent->layout())
        layout->activate();
    FadingSnapshot::remove(view);
    const QRect place = placeInWindow(view).intersected(area);
    if (place.isEmpty())
        return;
    const qreal ratio = before.devicePixelRatio();
    const QRectF pixels(QPointF(place.topLeft() - area.topLeft()) * ratio, QSizeF(place.size()) * ratio);
    auto *snapshot = new FadingSnapshot(view, before.copy(pixels.toAlignedRect()));
    snapshot->setGeometry(place);
    snapshot->show();
    snapshot->raise();
}

void Animator::setConstant(LayoutConstraint &constraint, double constant, std::chrono::milliseconds duration,
                           const std::function<void()> &completion)
{
    constraint.move(constant, prefersReducedMotion() ? std::chrono::milliseconds() : duration, completion);
}

QEasingCurve Animator::easeInEaseOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
    return curve;
}

void Animator::setReducedMotion(std::optional<bool> reduced)
{
    reducedMotionForTests = reduced;
}

bool Animator::prefersReducedMotion()
{
    return reducedMotionForTests ? *reducedMotionForTests : Appearance::shared().prefersReducedMotion();
}

#include "Animator.moc"
