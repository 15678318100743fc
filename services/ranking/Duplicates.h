#pragma once
#include <search/api/Subtitle.h>
#include <QList>

/// The list with each subtitle once. One service's file is itself by its id. Files of two services are the
/// same when release, language and marks are; of those the one that matches the video's hash stays, else the
/// earlier. Any thread.
QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles);
