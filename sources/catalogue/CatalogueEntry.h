#pragma once
#include <model/Subtitle.h>
#include <QByteArray>

/// A subtitle as one catalogue found it; the service adds what it knows beyond the file. Shared once it is
/// complete.
struct CatalogueEntry
{
    qint64 id = 0; // the row in its catalogue
    Subtitle subtitle;
    QByteArray digest; // of the content: equal for equal files
    int closeness = 0; // of the title to the words asked for; see TitleAnswer
};

/// A film's picture, or that of the series an episode belongs to.
struct CatalogueFilm
{
    qint64 id = 0;
    bool isSeries = false;
};

/// What a download writes.
struct CatalogueFile
{
    QString release;
    QString format;
    QByteArray content;
};
