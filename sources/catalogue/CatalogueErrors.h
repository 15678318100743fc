#pragma once
#include <base/Result.h>
#include <QHash>

enum class CatalogueFailure
{
    Missing = 1,
    Damaged = 2,
    OtherVersion = 3,
    Unreadable = 4,
    NoLongerThere = 5,
    NoPicture = 6,
    DiskFull = 7,
    Busy = 8,
    Unwritable = 9,
    TooSlow = 10
};

/// The error sentences of catalogues. Made on the main thread, where texts are localised; afterwards a plain
/// value for any thread.
class CatalogueErrors final
{
public:
    CatalogueErrors();

    /// Domain "Catalogue", code the failure. `path` names the file concerned; `detail` is for the log, and
    /// shown to a terminal there: it may hold names from the file.
    base::Error error(CatalogueFailure failure, const QString &path, const QString &detail = {}) const;

private:
    QHash<CatalogueFailure, QString> m_sentences;
};
