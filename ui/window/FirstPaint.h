#pragma once
#include <functional>

/// Defers work until the first window was painted, so that it does not delay the start. Main thread only.
namespace FirstPaint
{
/// Runs `block` on the main queue after the first paint, or one second after the first such call when no
/// window is painted. Never before this call has returned.
void afterwards(std::function<void()> block);
/// Called when a window is painted.
void notice();
/// For tests: resets to the state before the first paint.
void forget();
} // namespace FirstPaint
