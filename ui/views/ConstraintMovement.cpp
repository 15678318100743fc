#include "ConstraintMovement.h"
#include "EasingCurves.h"
#include "LayoutConstraint.h"

#include <QPointer>

#include <utility>

void ConstraintMovement::start(LayoutConstraint &constraint, qreal constant,
                               std::chrono::milliseconds duration, std::function<void()> completion)
{
    const QPointer<ConstraintMovement> replaced = constraint.m_movement;
    auto *movement = new ConstraintMovement(constraint, std::move(completion));
    movement->setStartValue(constraint.presentedConstant());
    movement->setEndValue(constant);
    movement->setDuration(int(duration.count()));
    movement->setEasingCurve(easeInEaseOut());
    constraint.m_movement = movement;
    if (replaced)
        replaced->stop();
    const QPointer<LayoutConstraint> alive = &constraint;
    constraint.setTarget(constant);
    if (alive && constraint.m_movement == movement)
        movement->QVariantAnimation::start();
    // Last, because the completion may destroy this object.
    if (replaced)
        replaced->end();
}

ConstraintMovement::ConstraintMovement(LayoutConstraint &constraint, std::function<void()> completion)
    : QVariantAnimation(&constraint), m_constraint(constraint), m_completion(std::move(completion))
{
    connect(this, &QAbstractAnimation::finished, this, [this] {
        const QPointer<ConstraintMovement> alive = this;
        m_constraint.present(m_constraint.constant());
        if (alive)
            end();
    });
}

void ConstraintMovement::end()
{
    disconnect(this, &QAbstractAnimation::finished, this, nullptr);
    stop();
    if (m_constraint.m_movement == this)
        m_constraint.m_movement = nullptr;
    deleteLater();
    if (const auto completion = std::exchange(m_completion, {}))
        completion();
}

void ConstraintMovement::updateCurrentValue(const QVariant &value)
{
    // Also called while the movement is being set up.
    if (state() != QAbstractAnimation::Stopped)
        m_constraint.present(value.toReal());
}
