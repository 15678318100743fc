#pragma once
#include <sources/catalogue/CatalogueWriter.h>

/// What the path of a subtitle file says about it.
struct SubtitleName
{
    QString release;
    QString language; // three letters; empty when the path names none
    bool hearingImpaired = false;
    bool foreignPartsOnly = false;
    QStringList videoNames; // without extension: what a video beside it may be called, the likeliest first
};

/// Reads "Harbour.Lights.2019.en.sdh.srt" and "Harbour Lights 2019/Subs/2_English.srt". Where a file's name
/// is no release, its folder's is. Any thread.
SubtitleName subtitleName(const QString &path);

/// The film, or episode, that a release's name says it is; the whole name is the title where none is found.
FilmRecord filmOfRelease(const QString &release);

/// Whether a name is that of a subtitle's file, also a packed one ("a.srt.gz").
bool isSubtitleFileName(const QString &name);
/// Whether a folder is one that subtitles lie in beside their video ("Subs").
bool isSubtitleFolderName(const QString &name);
