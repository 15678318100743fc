#pragma once
#include <model/FolderImporting.h>

/// What the Services pane says of an import, in the person's language. Main thread only.
namespace FolderImportSentences
{
/// One line.
QString whileRunning(const FolderImportState &state);
/// Empty when there was none.
QString atTheEnd(const FolderImportState &state);
} // namespace FolderImportSentences
