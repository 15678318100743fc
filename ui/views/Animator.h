#pragma once
#include <chrono>
#include <functional>
#include <optional>

class Image;
class ImageView;
class LayoutConstraint;
class QWidget;

/// Animated changes of views. With reduced motion they take effect at once, completions included. The state
/// that a caller reads back (isHidden, constant, image) is final from the start. Main thread only.
class Animator final
{
public:
    static constexpr std::chrono::milliseconds DefaultDuration{250};

    /// Fades a view in or out.
    static void setHidden(QWidget &view, bool hidden);
    /// Fades an image view to another image (or none).
    static void setImage(ImageView &view, const std::optional<Image> &image);
    /// Moves a constraint from where it is shown, also during another movement. `completion` runs once when
    /// the movement ends or is replaced.
    static void setConstant(LayoutConstraint &constraint, double constant,
                            std::chrono::milliseconds duration = DefaultDuration,
                            std::function<void()> completion = {});

    /// For tests: overrides the desktop's reduced-motion setting.
    static void setReducedMotion(std::optional<bool> reduced);
    static bool prefersReducedMotion();
};
