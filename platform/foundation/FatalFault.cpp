#include "FatalFault.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace
{
std::function<void(const QString &)> faultHandler;
}

void fatalFault(const QString &message)
{
    if (faultHandler)
        faultHandler(message);
    std::fprintf(stderr, "Fatal fault: %s\n", qUtf8Printable(message));
    std::abort();
}

void setFatalFaultHandler(std::function<void(const QString &)> handler)
{
    faultHandler = std::move(handler);
}
