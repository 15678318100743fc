#include "FatalFault.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace
{
std::mutex handlerMutex;
std::function<void(const QString &)> faultHandler;
} // namespace

void fatalFault(const QString &message)
{
    std::unique_lock lock(handlerMutex);
    const auto handler = faultHandler;
    lock.unlock();
    if (handler)
        handler(message);
    std::fprintf(stderr, "Fatal fault: %s\n", qUtf8Printable(message));
    std::abort();
}

void setFatalFaultHandler(std::function<void(const QString &)> handler)
{
    const std::scoped_lock lock(handlerMutex);
    faultHandler = std::move(handler);
}
