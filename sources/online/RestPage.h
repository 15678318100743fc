#pragma once
#include "RestRecord.h"

#include <base/Result.h>

#include <stop_token>

/// One page of a search answer.
struct RestPage
{
    QList<SubtitlePtr> subtitles;
    QByteArray fingerprint; // of the records: a page that repeats has the same
    int records = 0;
    int page = 1;
    int totalPages = 0;
    qint64 totalCount = 0;

    /// An Error for what is no search answer, and for one of which not a single record can be read. Ends
    /// early once it is asked to stop, and what it gives then is of no use. Any thread.
    static Result<RestPage> read(const QByteArray &json, const QUrl &base, const Locale &locale,
                                 const std::stop_token &stop = {});
};
