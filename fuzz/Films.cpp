// Answers and pictures of the film database: any bytes give a result or none, and a picture of the size asked
// for.
#include "Oracle.h"

#include <media/PosterImage.h>
#include <sources/films/FilmAnswers.h>

#include <QGuiApplication>

namespace
{
constexpr int MaxSide = 4096; // of a picture that is read at all
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(2000 + static_cast<double>(size) / 20);
    const QByteArray bytes = bytesOf(data, size);
    FilmAnswers::readFind(bytes);
    FilmAnswers::readShow(bytes);
    const QImage picture = posterImage(bytes, QSize(100, 150), 2);
    require(picture.width() <= MaxSide && picture.height() <= MaxSide, "a picture has its limit");
    require(picture.isNull() || picture.devicePixelRatio() > 0, "a picture can be drawn");
    return 0;
}
