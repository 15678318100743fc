#include "FirstPaint.h"

#include <base/MainQueue.h>

#include <utility>
#include <vector>

namespace
{
using namespace std::chrono_literals;

constexpr auto PaintTimeout = 1s; // a window may start minimised

struct State
{
    bool hasPainted = false;
    int start = 0; // increases with each `forget` of a test
    std::vector<std::function<void()>> waiting;
};

State &state()
{
    static State state;
    return state;
}

void releaseAfter(std::chrono::milliseconds timeout)
{
    MainQueue::shared().asyncAfter(timeout, [start = state().start] {
        if (start == state().start)
            FirstPaint::notice();
    });
}
} // namespace

void FirstPaint::afterwards(std::function<void()> block)
{
    if (state().hasPainted)
        return MainQueue::shared().async(std::move(block));
    if (state().waiting.empty())
        releaseAfter(PaintTimeout);
    state().waiting.push_back(std::move(block));
}

void FirstPaint::notice()
{
    if (std::exchange(state().hasPainted, true))
        return;
    // The picture reaches the screen after the paint event, and so before the main queue runs.
    for (std::function<void()> &block : std::exchange(state().waiting, {}))
        MainQueue::shared().async(std::move(block));
}

void FirstPaint::forget()
{
    state() = {.hasPainted = false, .start = state().start + 1, .waiting = {}};
}
