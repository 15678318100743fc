#pragma once
#include <QEasingCurve>
#include <chrono>
#include <functional>
#include <optional>

class LayoutConstraint;
class QWidget;

/// Animated changes of views. With the desktop's reduced-motion setting they are at once, completions
/// included. The state a caller reads back (isHidden, constant) is the new one from the start. Main thread
/// only.
class Animator final
{
public:
    static constexpr std::chrono::milliseconds DefaultDuration{250};

    /// Fades a view in or out.
    static void setHidden(QWidget &view, bool hidden);
    /// Moves a constraint; a movement under way goes on from where it is. `completion` runs once when the
    /// movement has ended, also when a later one took over.
    static void setConstant(LayoutConstraint &constraint, double constant,
                            std::chrono::milliseconds duration = DefaultDuration,
                            const std::function<void()> &completion = {});
    /// The course of every animation: a cubic curve with the control points (0.42, 0) and (0.58, 1).
    static QEasingCurve easeInEaseOut();

    /// For tests: overrides the desktop's reduced-motion setting.
    static void setReducedMotion(std::optional<bool> reduced);
    static bool prefersReducedMotion();
};
