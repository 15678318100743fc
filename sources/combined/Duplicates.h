#pragma once
#include <model/Subtitle.h>
#include <QList>
#include <stop_token>

/// Removes duplicates. Within one service a file is identified by its id. Files of two services are the same
/// when release, language and marks agree, each having at most one partner; the one that matches the video's
/// hash is kept, otherwise the earlier. Linear time; stops early on request, and the result is then useless.
/// Any thread.
QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles, const std::stop_token &stop = {});
