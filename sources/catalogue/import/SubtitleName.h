#pragma once
#include <sources/catalogue/CatalogueRows.h>

/// The facts in the path of a subtitle file.
struct SubtitleName
{
    QString release;
    QString language; // three letters; empty when the path names none
    bool hearingImpaired = false;
    bool foreignPartsOnly = false;
    QStringList videoNames; // possible names of a video beside it, without extension, the likeliest first
};

/// Reads "Harbour.Lights.2019.en.sdh.srt" and "Harbour Lights 2019/Subs/2_English.srt". When the file's name
/// is not a release, the folder's name is used. Any thread.
SubtitleName subtitleName(const QString &path);

/// The film or episode that a release name states; the whole name is the title when none is found.
FilmRecord filmOfRelease(const QString &release);

/// Whether a name is that of a subtitle file, also a compressed one ("a.srt.gz").
bool isSubtitleFileName(const QString &name);
/// Whether a folder name is one for subtitles beside their video ("Subs").
bool isSubtitleFolderName(const QString &name);
