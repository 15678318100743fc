#pragma once
#include <model/Subtitle.h>
#include <QList>
#include <stop_token>

/// The list with each subtitle once. One service's file is itself by its id. A file of one
/// service is the same as one of another when release, language and marks are, and as no second one; of the
/// two the one that matches the video's hash stays, else the earlier. Takes time in proportion to the length
/// of the list; ends early once it is asked to stop, and what it gives then is of no use. Any thread.
QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles, const std::stop_token &stop = {});
