#include "LayoutConstraint.h"
#include "ConstraintMovement.h"

#include <utility>

void LayoutConstraint::setConstant(qreal constant)
{
    const auto movement = std::exchange(m_movement, {});
    if (movement)
        movement->stop();
    const QPointer<LayoutConstraint> alive = this;
    present(constant);
    if (alive)
        setTarget(constant);
    if (movement)
        movement->end();
}

void LayoutConstraint::setTarget(qreal constant)
{
    if (m_constant == constant)
        return;
    m_constant = constant;
    Q_EMIT constantChanged(constant);
}

void LayoutConstraint::present(qreal constant)
{
    if (m_presented == constant)
        return;
    m_presented = constant;
    Q_EMIT presentedConstantChanged(constant);
}
