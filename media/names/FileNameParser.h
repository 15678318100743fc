#pragma once
#include <model/Query.h>
#include <QUrl>

/// Parses the name of a video file or release: title, year, season and episode, and the words to search for.
/// Accepts every text, also an empty one. Linear in the text's length, of which only the first 1,024
/// characters are used. Any thread.
VideoFileComponents parseVideoName(const QString &text);

/// The same for the last path component of a file URL, whose bytes need not be UTF-8.
VideoFileComponents videoFileComponents(const QUrl &url);
