#pragma once
#include <model/Subtitle.h>
#include <QByteArray>

/// A subtitle as one catalogue stores it; the service adds further facts. Shared once it is complete.
struct CatalogueEntry
{
    qint64 id = 0; // the row in its catalogue
    Subtitle subtitle;
    QByteArray digest; // of the content: equal for equal files
    int closeness = 0; // of the title to the searched words; see TitleAnswer
};

/// A film's picture, or that of an episode's series.
struct CatalogueFilm
{
    qint64 id = 0;
    bool isSeries = false;
};

/// The content that a download writes.
struct CatalogueFile
{
    QString release;
    QString format;
    QByteArray content;
};
