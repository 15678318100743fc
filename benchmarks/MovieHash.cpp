#include "Pairs.h"
#include "movie_hash_floor.h"

#include <media/MovieHash.h>

#include <QFile>
#include <QList>
#include <QTemporaryDir>

#include <cstdio>

namespace
{
using namespace Qt::StringLiterals;

constexpr int FileCount = 1000;
constexpr qint64 BlockBytes = 65536;
constexpr qint64 VideoBytes = 4 * 1024 * 1024; // a hole between its ends takes no room

/// Files like videos, in the system's cache: what is measured is the program, not the disk.
class Videos final
{
public:
    Videos();

    QList<QUrl> urls;
    QList<QByteArray> paths;

private:
    QTemporaryDir m_folder;
};

Videos::Videos()
{
    for (int number = 0; number < FileCount; ++number) {
        QFile file(m_folder.filePath(u"%1.mkv"_s.arg(number)));
        const QByteArray block(BlockBytes, char('a' + number % 26));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(block) == BlockBytes &&
                             file.seek(VideoBytes - BlockBytes) && file.write(block) == BlockBytes;
        if (!written)
            qFatal("%s could not be written", qUtf8Printable(file.fileName()));
        urls += QUrl::fromLocalFile(file.fileName());
        paths += QFile::encodeName(file.fileName());
    }
}
} // namespace

int main(int argc, char **argv)
{
    const Videos videos;
    const auto agrees = [&videos](int index) {
        const auto hash = movieHash(videos.urls[index]);
        return hash && hash->hash.toULongLong(nullptr, 16) == movieHashFloor(videos.paths[index]);
    };
    if (!agrees(0) || !agrees(FileCount - 1)) {
        std::fprintf(stderr, "hash and floor do not agree\n");
        return 1;
    }
    const auto hashAll = [&videos](benchmark::State &state) {
        for (const auto _ : state) {
            for (const QUrl &url : videos.urls)
                benchmark::DoNotOptimize(movieHash(url));
        }
    };
    const auto addUpAll = [&videos](benchmark::State &state) {
        for (const auto _ : state) {
            for (const QByteArray &path : videos.paths)
                benchmark::DoNotOptimize(movieHashFloor(path.constData()));
        }
    };
    return runPairs(argc, argv, {{"movie_hash", hashAll, addUpAll, benchmark::kMillisecond}});
}
