#pragma once
#include "MainQueue.h"
#include "WorkerThread.h"

#include <memory>
#include <utility>

/// Runs `work` on the worker and passes its result to `done` on the main thread.
template <class Work, class Done>
void inBackground(WorkerThread &worker, Work work, Done done)
{
    worker.post([work = std::move(work), done = std::move(done)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        MainQueue::shared().async([result, done = std::move(done)] { done(std::move(*result)); });
    });
}
