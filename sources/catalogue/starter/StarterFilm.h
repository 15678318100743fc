#pragma once
#include <base/Result.h>
#include <sources/catalogue/CatalogueWriter.h>

/// A film as its folder describes it: "film.json", the subtitle files it names, and the picture "poster.svg"
/// (or the one "poster" names, as episodes share their series').
struct StarterFilm
{
    FilmRecord film;
    QList<SubtitleRecord> subtitles;
};

/// Reads a film's folder. `samples` is the folder of the videos that entries name; their hash and size are
/// taken from the files. An Error names the file and what is wrong with it.
Result<StarterFilm> readStarterFilm(const QString &folder, const QString &samples);
