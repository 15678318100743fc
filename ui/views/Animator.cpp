#include "Animator.h"
#include <ui/style/Appearance.h>
#include "ConstraintMovement.h"
#include "FadingSnapshot.h"
#include "LayoutConstraint.h"

#include <QLayout>

namespace
{
std::optional<bool> reducedMotionForTests;

bool isOnScreen(const QWidget &view)
{
    const QWidget *parent = view.parentWidget();
    return parent && parent->isVisible() && !view.isWindow();
}
} // namespace

void Animator::setHidden(QWidget &view, bool hidden)
{
    if (view.isHidden() == hidden)
        return;
    if (prefersReducedMotion() || !isOnScreen(view))
        return view.setHidden(hidden);
    // The view changes at once, so that its state is final and a view that fades out takes no more clicks; a
    // snapshot of the old look fades.
    const FadingSnapshot::Look before = FadingSnapshot::lookAround(view);
    view.setHidden(hidden);
    if (QLayout *layout = view.parentWidget()->layout())
        layout->activate();
    FadingSnapshot::fade(view, before);
}

void Animator::setConstant(LayoutConstraint &constraint, double constant, std::chrono::milliseconds duration,
                           std::function<void()> completion)
{
    if (duration.count() > 0 && !prefersReducedMotion())
        return ConstraintMovement::start(constraint, constant, duration, std::move(completion));
    constraint.setConstant(constant);
    if (completion)
        completion();
}

void Animator::setReducedMotion(std::optional<bool> reduced)
{
    reducedMotionForTests = reduced;
}

bool Animator::prefersReducedMotion()
{
    return reducedMotionForTests ? *reducedMotionForTests : Appearance::shared().prefersReducedMotion();
}
