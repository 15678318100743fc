#pragma once
#include <QtGlobal>
#include <algorithm>
#include <ctime>
#include <functional>
#include <limits>

/// The processor time that a piece of work takes on the calling thread: the least of a few runs, so that
/// neither the clock nor other programs count.
inline qint64 nanosecondsOfWork(const std::function<void()> &work)
{
    constexpr int Runs = 5;
    const auto worked = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64{1'000'000'000} * time.tv_sec + time.tv_nsec;
    };
    qint64 least = std::numeric_limits<qint64>::max();
    for (int run = 0; run < Runs; ++run) {
        const qint64 start = worked();
        work();
        least = std::min(least, worked() - start);
    }
    return std::max<qint64>(least, 1);
}

/// Whether work on four times as much takes about four times as long and not sixteen times, as it does where
/// each part is looked at with each other. The machine's speed does not matter.
inline bool growsLikeItsInput(const std::function<void()> &part, const std::function<void()> &fourTimesAsMuch)
{
    constexpr qint64 Limit = 9;
    return nanosecondsOfWork(fourTimesAsMuch) < Limit * nanosecondsOfWork(part);
}
