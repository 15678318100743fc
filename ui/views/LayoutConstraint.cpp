#include "LayoutConstraint.h"
#include "Animator.h"

#include <utility>

LayoutConstraint::LayoutConstraint(QObject *parent) : QObject(parent)
{
    m_movement.setEasingCurve(Animator::easeInEaseOut());
    connect(&m_movement, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        // The movement also announces values while it is being set up.
        if (m_movement.state() != QAbstractAnimation::Stopped)
            present(value.toReal());
    });
    connect(&m_movement, &QAbstractAnimation::finished, this, [this] {
        present(m_constant);
        if (const auto completion = std::exchange(m_completion, {}))
            completion();
    });
}

void LayoutConstraint::move(qreal constant, std::chrono::milliseconds duration,
                            const std::function<void()> &completion)
{
    const bool isAnimated = duration.count() > 0;
    const auto replaced = std::exchange(m_completion, isAnimated ? completion : nullptr);
    m_movement.stop();
    if (std::exchange(m_constant, constant) != constant)
        Q_EMIT constantChanged(constant);
    if (isAnimated) {
        m_movement.setStartValue(m_presented);
        m_movement.setEndValue(constant);
        m_movement.setDuration(int(duration.count()));
        m_movement.start();
    } else {
        present(constant);
    }
    // The completions run last, because they may destroy this object.
    if (replaced)
        replaced();
    if (!isAnimated && completion)
        completion();
}

void LayoutConstraint::present(qreal constant)
{
    if (std::exchange(m_presented, constant) != constant)
        Q_EMIT presentedConstantChanged(constant);
}
