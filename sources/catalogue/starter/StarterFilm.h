#pragma once
#include <base/Result.h>
#include <sources/catalogue/CatalogueWriter.h>

/// A film as described by its folder: "film.json", the subtitle files it names, and the picture "poster.svg"
/// (or the one named by "poster", since episodes share their series' picture).
struct StarterFilm
{
    FilmRecord film;
    QList<SubtitleRecord> subtitles;
};

/// Reads a film's folder. `samples` is the folder of the videos that entries name; their hashes and sizes are
/// computed from the files. An Error names the file and its fault.
Result<StarterFilm> readStarterFilm(const QString &folder, const QString &samples);
