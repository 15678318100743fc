#pragma once
#include "RestRecord.h"

#include <base/Result.h>

#include <stop_token>

/// One page of a search answer.
struct RestPage
{
    QList<SubtitlePtr> subtitles;
    QByteArray fingerprint; // of the records; equal for a repeated page
    int records = 0;
    int page = 1;
    int totalPages = 0;
    qint64 totalCount = 0;

    /// An Error when it is not a search answer or no record can be read. Stops early on request; the result
    /// is then useless. Any thread.
    static Result<RestPage> read(const QByteArray &json, const QUrl &base, const Locale &locale,
                                 const std::stop_token &stop = {});
};
