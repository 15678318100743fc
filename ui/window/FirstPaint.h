#pragma once
#include <functional>

/// Work that nobody should wait for when the program starts: it is done once a first window has been painted.
/// Main thread only.
namespace FirstPaint
{
/// Runs `block` on the main queue after the first paint; where no window is painted, a second after the first
/// such call. Never before this call has returned.
void afterwards(std::function<void()> block);
/// A window is being painted.
void notice();
/// For tests: as if the program had just started.
void forget();
} // namespace FirstPaint
