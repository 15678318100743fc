#pragma once
#include <search/api/Subtitle.h>
#include <QList>

/// The list with each subtitle once. One service's file is itself by its id. A file of one
/// service is the same as one of another when release, language and marks are, and as no second one; of the
/// two the one that matches the video's hash stays, else the earlier. Any thread.
QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles);
