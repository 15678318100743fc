#pragma once
#include "CatalogueImport.h"

/// Shows the progress of an import on standard error: one updated line on a terminal, one line every few
/// seconds otherwise. Also knows whether the person asked to stop (Ctrl+C, or the end of the session).
class ImportProgress final
{
public:
    enum class Say
    {
        Everything,
        OnlyTheEnd
    };

    explicit ImportProgress(Say say);

    /// From now on Ctrl+C asks to stop; a second one ends the program.
    static void listenForInterrupts();
    static bool isInterrupted();

    void show(const ImportCounts &counts);
    void end(const ImportCounts &counts);

private:
    Say m_say;
    bool m_isTerminal = false;
    QElapsedTimer m_running;
    qint64 m_lastShown = 0;
};
