#pragma once
#include <model/Query.h>
#include <QUrl>

/// What the name of a video file or release says: title, year, season and episode, and the words to search
/// for. Every text gives an answer, an empty one included. Linear in the text's length, of which only the
/// first 1,024 characters count. Any thread.
VideoFileComponents parseVideoName(const QString &text);

/// The same of the last path component of a file URL, whose bytes need not be UTF-8.
VideoFileComponents videoFileComponents(const QUrl &url);
