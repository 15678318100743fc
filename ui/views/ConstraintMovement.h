#pragma once
#include <QVariantAnimation>
#include <chrono>
#include <functional>

class LayoutConstraint;

/// One animated change of a constraint, its child: destroyed with it, and then without calling the
/// completion. Main thread only.
class ConstraintMovement final : public QVariantAnimation
{
public:
    /// Starts to move `constraint` from where it is shown and replaces a running movement.
    static void start(LayoutConstraint &constraint, qreal constant, std::chrono::milliseconds duration,
                      std::function<void()> completion);

    /// Stops at the present value and runs the completion, then deletes the movement.
    void end();

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    ConstraintMovement(LayoutConstraint &constraint, std::function<void()> completion);

    LayoutConstraint &m_constraint;
    std::function<void()> m_completion;
};
