#include "ImportProgress.h"

#include <base/TerminalText.h>

#include <csignal>
#include <iostream>
#include <unistd.h>

namespace
{
constexpr qint64 TerminalMilliseconds = 100;
constexpr qint64 LogMilliseconds = 5000;

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

std::string sentence(const ImportCounts &counts)
{
    return std::to_string(counts.files) + " files, " + std::to_string(counts.added) + " added, " +
           std::to_string(counts.known) + " known, " + std::to_string(counts.refused) + " refused";
}
} // namespace

ImportProgress::ImportProgress(Say say) : m_say(say), m_isTerminal(::isatty(STDERR_FILENO) != 0)
{
    m_running.start();
}

void ImportProgress::listenForInterrupts()
{
    std::signal(SIGINT, noteInterrupt);
    std::signal(SIGTERM, noteInterrupt);
}

bool ImportProgress::isInterrupted()
{
    return interrupted != 0;
}

void ImportProgress::show(const ImportCounts &counts)
{
    const qint64 now = m_running.elapsed();
    if (m_say == Say::OnlyTheEnd ||
        now - m_lastShown < (m_isTerminal ? TerminalMilliseconds : LogMilliseconds))
        return;
    m_lastShown = now;
    std::cerr << (m_isTerminal ? "\r\x1b[K" : "") << sentence(counts) << (m_isTerminal ? "" : "\n")
              << std::flush;
}

void ImportProgress::end(const ImportCounts &counts)
{
    if (m_isTerminal && m_lastShown > 0)
        std::cerr << "\r\x1b[K";
    for (const QString &problem : counts.problems)
        std::cerr << terminalText(problem).toStdString() << '\n';
    if (counts.refused > counts.problems.size())
        std::cerr << "and " << counts.refused - counts.problems.size() << " more that were refused\n";
    if (counts.unlabelled > 0)
        std::cerr << counts.unlabelled << " name no language; --language says which they are in\n";
    std::cerr << sentence(counts) << '\n';
}
