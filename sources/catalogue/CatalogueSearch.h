#pragma once
#include "CatalogueErrors.h"
#include "CatalogueService.h"
#include "QueryInterrupter.h"

#include <base/Locale.h>

/// What a query asks, read from its arguments. Sizes and hashes that are none ask for nothing.
struct CatalogueRequest
{
    std::optional<VideoHash> video;
    QString text;
    std::optional<QString> language; // three letters; nothing for all, empty for what is no language
    QString videoName;               // remembered for the video; empty when unknown
    Locale locale;                   // in whose language languages are named

    static CatalogueRequest from(const QList<Arg> &args, const VideoNames &names);
};

/// Searches all catalogues for one request: the best first, duplicates once. The limits hold for each of them.
/// Any thread.
Result<QueryResult> searchCatalogues(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                     const CatalogueRequest &request, const ReadLimits &limits = {});

/// Reads the file that a result of `searchCatalogues` stands for, and the name to save it under.
struct FetchedSubtitle
{
    QString fileName;
    QByteArray content;
};
Result<FetchedSubtitle> fetchFromCatalogue(const QList<CataloguePlace> &places, const CatalogueErrors &errors,
                                           const Subtitle &subtitle);
