#pragma once
#include "CatalogueDatabase.h"
#include "CatalogueService.h"

#include <base/Locale.h>

/// A query's arguments, parsed. Invalid sizes and hashes are ignored.
struct CatalogueRequest
{
    std::optional<VideoHash> video;
    QString text; // of a video its name, when that is known; it decides which of equal files is kept
    std::optional<QString> language;   // three letters; none for all, empty for an invalid code
    Locale locale = Locale::current(); // the locale of language names

    static CatalogueRequest from(const QList<Arg> &args);
};

/// Searches all catalogues for one request. Each content comes once in a language. The limits hold for each
/// catalogue. Any thread.
Result<QueryResult> searchCatalogues(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                     const CatalogueRequest &request, const ReadLimits &limits = {});

/// Writes the file of a result of `searchCatalogues` into a new folder of `downloads`. Any thread.
Result<QUrl> fetchFromCatalogue(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                const Subtitle &subtitle, const DownloadFolder &downloads);
