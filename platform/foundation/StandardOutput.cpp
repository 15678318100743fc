#include "StandardOutput.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace
{
std::mutex outputMutex;
std::function<void(const QString &)> lineObserver;
} // namespace

void printLine(const QString &line)
{
    QString text = line;
    for (QChar &character : text) {
        if (character == u'\n' || character == u'\r')
            character = u' ';
    }
    const QByteArray bytes = text.toUtf8() + '\n';
    const std::scoped_lock lock(outputMutex);
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
    if (lineObserver)
        lineObserver(text);
}

void setPrintedLineObserver(std::function<void(const QString &)> observer)
{
    const std::scoped_lock lock(outputMutex);
    lineObserver = std::move(observer);
}
