#include "FatalFault.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace
{
std::mutex handlerMutex;
std::function<void(const QString &)> faultHandler;

std::function<void(const QString &)> currentHandler()
{
    const std::scoped_lock lock(handlerMutex);
    return faultHandler;
}
} // namespace

void fatalFault(const QString &message)
{
    if (const auto handler = currentHandler())
        handler(message);
    std::fprintf(stderr, "Fatal fault: %s\n", qUtf8Printable(message));
    std::abort();
}

void setFatalFaultHandler(std::function<void(const QString &)> handler)
{
    const std::scoped_lock lock(handlerMutex);
    faultHandler = std::move(handler);
}
