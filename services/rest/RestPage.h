#pragma once
#include "RestRecord.h"

#include <platform/Result.h>

/// One page of a search answer.
struct RestPage
{
    QList<SubtitlePtr> subtitles;
    QByteArray fingerprint; // of the records: a page that repeats has the same
    int records = 0;
    int page = 1;
    int totalPages = 0;
    qint64 totalCount = 0;

    /// An Error for what is no search answer, and for one of which not a single record can be read. Any
    /// thread.
    static Result<RestPage> read(const QByteArray &json, const QUrl &base, const Locale &locale);
};
