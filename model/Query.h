#pragma once
#include "Subtitle.h"
#include <QList>
#include <optional>

/// The kinds of query argument. Services read them by position, so the order is part of the interface.
enum class Param
{
    unused0 = 0,
    unused1 = 1,
    byteSize = 2,  // the file's size, decimal
    movieHash = 3, // 16 hexadecimal digits
    text = 4,      // free text, as typed
    unused5 = 5,
    language = 6, // three-letter code
};

/// One argument of a query.
struct Arg
{
    Param param;
    QString value;

    bool operator==(const Arg &) const = default;
};

/// What a query found, in the service's order.
struct QueryResult
{
    static constexpr qsizetype MaxRows = 2000; // that a search gives in the end

    std::optional<QList<SubtitlePtr>> subtitles;
    qint64 leftOut = 0; // how many more there are than the list has
};

/// What identifies a video file's content: the size in bytes and the hash over its first and last 64 KiB.
struct VideoHash
{
    QString hash;
    quint64 size = 0;

    bool operator==(const VideoHash &) const = default;
};

/// What a video file's name says.
struct VideoFileComponents
{
    QString searchString; // the words to search for
    QString title = {};
    std::optional<int> year = {};
    std::optional<int> season = {};
    std::optional<int> episode = {};
};
