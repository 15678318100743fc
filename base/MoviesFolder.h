#pragma once
#include <QByteArray>
#include <optional>

/// The path of the person's folder for videos, read anew at every call from the desktop's user-dirs.dirs.
/// Where that names none, "Videos" in the home folder if it is there. Nothing when there is neither, and when
/// the person has turned the folder off by naming the home folder itself. Any thread.
std::optional<QByteArray> personalMoviesFolder();
