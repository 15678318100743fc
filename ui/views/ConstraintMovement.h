#pragma once
#include <QVariantAnimation>
#include <chrono>
#include <functional>

class LayoutConstraint;

/// One animated change of a constraint, its child: gone with it, and then without a completion. Main thread
/// only.
class ConstraintMovement final : public QVariantAnimation
{
public:
    /// Starts to move `constraint` from where it is shown, in the place of a movement under way.
    static void start(LayoutConstraint &constraint, qreal constant, std::chrono::milliseconds duration,
                      std::function<void()> completion);

    /// Ends where it is and runs the completion. The movement is gone afterwards.
    void end();

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    ConstraintMovement(LayoutConstraint &constraint, std::function<void()> completion);

    LayoutConstraint &m_constraint;
    std::function<void()> m_completion;
};
