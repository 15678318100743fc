#pragma once
#include <base/MainQueue.h>
#include <ui/window/FirstPaint.h>

/// A program that has painted no window yet, with a main queue whose clock the test drives. Both are as they
/// were when it goes.
class UnpaintedProgram final
{
public:
    UnpaintedProgram()
    {
        MainQueue::shared().clear();
        MainQueue::shared().useManualClock();
        FirstPaint::forget();
    }

    ~UnpaintedProgram()
    {
        FirstPaint::forget();
        MainQueue::shared().clear();
        MainQueue::shared().useSystemClock();
    }

    Q_DISABLE_COPY_MOVE(UnpaintedProgram)
};
