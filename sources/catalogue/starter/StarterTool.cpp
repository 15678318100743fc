#include "StarterFilm.h"

#include <base/Bundle.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <iostream>

using namespace Qt::StringLiterals;

namespace
{
Result<void> addFilm(CatalogueWriter &writer, const StarterFilm &film)
{
    const Result<qint64> row = writer.addFilm(film.film);
    if (!row)
        return row.error();
    for (const SubtitleRecord &subtitle : film.subtitles) {
        if (const Result<void> added = writer.addSubtitle(*row, subtitle); !added)
            return added;
    }
    return {};
}

Result<void> write(const QString &path, const QString &sources, const QString &samples)
{
    Result<CatalogueWriter> writer = CatalogueWriter::create(path);
    if (!writer)
        return writer.error();
    for (const QString &folder : QDir(sources).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const Result<StarterFilm> film = readStarterFilm(QDir(sources).filePath(folder), samples);
        if (!film)
            return film.error();
        if (const Result<void> added = addFilm(writer.value(), *film); !added)
            return added;
    }
    return writer.value().commit();
}

/// Writes to a temporary file and renames it, so that a failed build leaves no partial catalogue.
Result<void> build(const QString &sources, const QString &samples, const QString &target)
{
    const QString draft = target + ".new"_L1;
    QFile::remove(draft);
    if (const Result<void> written = write(draft, sources, samples); !written)
        return written;
    QFile::remove(target);
    if (!QFile::rename(draft, target))
        return base::Error{u"Starter"_s, 2, u"%1 cannot be written"_s.arg(target)};
    return {};
}
} // namespace

/// plovendix-starter SOURCES SAMPLES TARGET: builds the catalogue that ships with the program. SOURCES lies
/// in the folder of the resources, whose table of language codes is read.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4) {
        std::cerr << "usage: plovendix-starter SOURCES SAMPLES TARGET\n";
        return 2;
    }
    Bundle::setMainFolder(QFileInfo(arguments[1]).absolutePath());
    const Result<void> built = build(arguments[1], arguments[2], arguments[3]);
    if (!built) {
        std::cerr << "plovendix-starter: " << built.error().localizedDescription.toStdString() << '\n';
        return 1;
    }
    return 0;
}
