// Answers and pictures of the film database: any bytes give a result or none, and a picture of the size asked
// for.
#include "Oracle.h"

#include <media/PosterImage.h>
#include <sources/films/FilmAnswers.h>

#include <QGuiApplication>

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
    require(picture.isNull() || picture.width() == 200, "a picture is as wide as it is shown");
    require(picture.isNull() || picture.height() <= 200 * 4096, "a picture keeps its proportions");
    return 0;
}
