#pragma once
#include <QString>
#include <memory>
#include <optional>

/// One search result. Made by a service, shared, and never changed afterwards; any thread.
struct Subtitle
{
    QString subFileName;   // the release or file the subtitle was made for
    QString languageName;  // in the person's language
    QString subFormat;     // the format's name, as "srt"
    QString subLanguageID; // the service family's three-letter code
    std::optional<QString> imdbID;

    // What the services know beyond that; each may be absent.
    QString service; // the service that found it and must download it
    QString fileID;  // the service's own name for the file
    QString title;
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
    bool matchesHash = false;
    std::optional<double> framesPerSecond;
    std::optional<qint64> downloads;
    bool hearingImpaired = false;
    bool foreignPartsOnly = false;
    bool machineTranslated = false;
    bool trusted = false; // the service vouches for its author

    /// The second line of a result: film and year, "matches this file", frame rate, downloads and marks, as
    /// far as they are known, joined by " · ".
    QString detailString() const;
};

using SubtitlePtr = std::shared_ptr<const Subtitle>;
