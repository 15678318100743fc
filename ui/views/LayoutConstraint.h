#pragma once
#include <QVariantAnimation>
#include <chrono>
#include <functional>

/// One number of a layout that can be changed and animated: the distance of a panel from its window's bottom
/// edge (0 shown, negative below it). A container view lays itself out again when it changes. Destroyed
/// during a movement, it drops the completion.
class LayoutConstraint final : public QObject
{
    Q_OBJECT

public:
    explicit LayoutConstraint(QObject *parent = nullptr);
    /// The value that was set or is the target of an animation.
    qreal constant() const { return m_constant; }
    /// Sets the value at once and ends a running movement.
    void setConstant(qreal constant) { move(constant, {}, {}); }
    /// Moves from the value that is shown; at once when there is no duration. The completion of a movement
    /// that this one replaces runs before the call returns.
    void move(qreal constant, std::chrono::milliseconds duration, const std::function<void()> &completion);
    /// The value that the layout shows now; on its way to `constant` during an animation.
    qreal presentedConstant() const { return m_presented; }

Q_SIGNALS:
    void constantChanged(qreal constant);
    void presentedConstantChanged(qreal constant);

private:
    void present(qreal constant);

    QVariantAnimation m_movement{this};
    std::function<void()> m_completion; // of the running movement
    qreal m_constant = 0;
    qreal m_presented = 0;
};
