// A catalogue file with bytes changed anywhere: every read ends in time, with rows within the limits or an
// error. The input is a list of changes to a sound file, eight bytes each: where, how many bytes, and what
// stands there.
#include "Oracle.h"

#include <base/Bundle.h>
#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/import/OwnCatalogue.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr size_t ChangeBytes = 8;

ReadSubtitle subtitle(int number)
{
    ReadSubtitle read;
    read.member = number;
    read.film.titles = {u"Paper Lighthouse %1"_s.arg(number / 3)};
    read.film.year = 1990 + number;
    read.film.imdbNumber = 9000000 + number;
    read.record.release = u"Paper.Lighthouse.%1.1080p.WEB-ABC"_s.arg(number);
    read.record.language = number % 2 == 0 ? u"eng"_s : u"ger"_s;
    read.record.format = u"srt"_s;
    read.content =
        StoredContent::packed("1\n00:00:01,000 --> 00:00:02,000\nWord " + QByteArray::number(number));
    return read;
}

/// The bytes of a small sound catalogue, made once by the program's own import.
const QByteArray &soundFile()
{
    static const QByteArray bytes = [] {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"catalogue.sqlite"_s);
        {
            Result<OwnCatalogue> own = OwnCatalogue::open(path);
            require(own.hasValue(), "a new catalogue opens");
            SourceStep step{u"/films/all.zip"_s, u"1"_s, {}, true};
            for (int number = 0; number < 24; ++number)
                step.subtitles += subtitle(number);
            require(own.value().enter({step}).hasValue(), "subtitles are entered");
            require(own.value().vacuum().hasValue(), "the file is made small");
            own.value().checkpoint();
        }
        QFile file(path);
        require(file.open(QIODevice::ReadOnly), "the new catalogue is read");
        return file.readAll();
    }();
    return bytes;
}

QByteArray changed(QByteArray file, const uint8_t *data, size_t size)
{
    for (size_t at = 0; at + ChangeBytes <= size; at += ChangeBytes) {
        const uint8_t *change = data + at;
        const auto place = static_cast<qsizetype>(change[0] | change[1] << 8 | change[2] << 16) % file.size();
        const qsizetype length = std::min<qsizetype>(1 + change[3] % 4, file.size() - place);
        for (qsizetype index = 0; index < length; ++index)
            file[place + index] = static_cast<char>(change[4 + index]);
    }
    return file;
}

void readAll(const CatalogueDatabase &catalogue)
{
    QList<CatalogueEntry> entries;
    const auto keep = [&entries](const Result<QList<CatalogueEntry>> &found) {
        if (!found)
            return;
        require(found->size() <= 500, "a search gives no more rows than its limit");
        entries += *found;
    };
    keep(catalogue.entriesForVideo(12909756, u"8e245d9679d31e12"_s, u"eng"_s));
    keep(catalogue.entriesForText(u"paper lighthouse"_s, QString()));
    keep(catalogue.entriesForText(u"Lighthouse 3"_s, u"ger"_s));
    for (const CatalogueEntry &entry : entries.first(std::min<qsizetype>(entries.size(), 4))) {
        if (const auto file = catalogue.file(entry.id); file && *file)
            require((*file)->content.size() <= CatalogueDatabase::MaxSubtitleBytes,
                    "a content has its limit");
    }
    if (const auto film = catalogue.filmByImdb(9000003); film && *film) {
        if (const auto poster = catalogue.poster((*film)->id))
            require(poster->size() <= CatalogueDatabase::MaxPosterBytes, "a picture has its limit");
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"catalogue.sqlite"_s);
    const QByteArray bytes = changed(soundFile(), data, size);
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size(),
            "the temporary file is written");
    file.close();

    const TimeLimit limit(8000);
    static const CatalogueErrors errors;
    ReadLimits limits;
    limits.longest = std::chrono::milliseconds(500);
    if (const auto catalogue = CatalogueDatabase::open(path, errors, limits))
        readAll(*catalogue);
    return 0;
}
