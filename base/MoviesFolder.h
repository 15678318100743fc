#pragma once
#include <QByteArray>
#include <optional>

/// The path of the person's folder for videos, read from the desktop's user-dirs.dirs on every call. When
/// that names none, "Videos" in the home folder if it exists. None when there is neither, or when the person
/// turned the folder off by naming the home folder itself. Any thread.
std::optional<QByteArray> personalMoviesFolder();
