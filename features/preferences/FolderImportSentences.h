#pragma once
#include <model/FolderImporting.h>

/// The Services pane's sentences about an import, localised. Main thread only.
namespace FolderImportSentences
{
/// The progress as one line.
QString whileRunning(const FolderImportState &state);
/// The result; empty when there was no import.
QString atTheEnd(const FolderImportState &state);
} // namespace FolderImportSentences
