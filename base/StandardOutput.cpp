#include "StandardOutput.h"
#include "OutputQueue.h"
#include "TerminalText.h"

#include <csignal>
#include <cstdlib>
#include <mutex>
#include <utility>

#include <unistd.h>

namespace
{
std::mutex outputMutex;
std::function<void(const QString &)> lineObserver;

OutputQueue &output()
{
    static OutputQueue *const queue = [] {
        std::atexit([] { output().drain(); });
        return new OutputQueue(STDOUT_FILENO);
    }();
    return *queue;
}
} // namespace

void printLine(const QString &line)
{
    const QString text = terminalText(line);
    output().write(text.toUtf8() + '\n');
    const std::scoped_lock lock(outputMutex);
    if (lineObserver)
        lineObserver(text);
}

void ignoreBrokenPipes()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void setPrintedLineObserver(std::function<void(const QString &)> observer)
{
    const std::scoped_lock lock(outputMutex);
    lineObserver = std::move(observer);
}
