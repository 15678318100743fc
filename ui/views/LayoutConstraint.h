#pragma once
#include <QObject>
#include <QPointer>

class ConstraintMovement;

/// One number of a layout that can be changed and animated: the distance of a panel from its window's bottom
/// edge (0 shown, negative below it). A container view lays itself out again when it changes.
class LayoutConstraint final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qreal constant READ constant WRITE setConstant NOTIFY constantChanged)

public:
    using QObject::QObject;
    /// The value that was set or is the target of an animation.
    qreal constant() const { return m_constant; }
    /// Sets the value at once and ends a running movement.
    void setConstant(qreal constant);
    /// The value that the layout shows now; on its way to `constant` during an animation.
    qreal presentedConstant() const { return m_presented; }

Q_SIGNALS:
    void constantChanged(qreal constant);
    void presentedConstantChanged(qreal constant);

private:
    friend class ConstraintMovement;
    void setTarget(qreal constant);
    void present(qreal constant);

    QPointer<ConstraintMovement> m_movement;
    qreal m_constant = 0;
    qreal m_presented = 0;
};
