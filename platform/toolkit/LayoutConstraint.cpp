#include "LayoutConstraint.h"
#include "ConstraintMovement.h"

void LayoutConstraint::setConstant(qreal constant)
{
    const QPointer<ConstraintMovement> movement = m_movement;
    m_movement = nullptr;
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
