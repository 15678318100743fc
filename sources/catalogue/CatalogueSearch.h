#pragma once
#include "CatalogueErrors.h"
#include "CatalogueService.h"
#include "QueryInterrupter.h"

#include <base/Locale.h>

/// A query's arguments, parsed. Invalid sizes and hashes are ignored.
struct CatalogueRequest
{
    std::optional<VideoHash> video;
    QString text;
    std::optional<QString> language; // three letters; none for all, empty for an invalid code
    QString videoName;               // remembered for the video; empty when unknown
    Locale locale;                   // the locale of language names

    static CatalogueRequest from(const QList<Arg> &args, const VideoNames &names);
};

/// Searches all catalogues for one request: the best results first, duplicates once. The limits hold for each
/// catalogue. Any thread.
Result<QueryResult> searchCatalogues(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                     const CatalogueRequest &request, const ReadLimits &limits = {});

/// Reads the file of a result of `searchCatalogues`, and the name to save it under.
struct FetchedSubtitle
{
    QString fileName;
    QByteArray content;
};
Result<FetchedSubtitle> fetchFromCatalogue(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                           const Subtitle &subtitle);
