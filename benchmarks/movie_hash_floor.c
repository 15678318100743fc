#include "movie_hash_floor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

enum
{
    BlockBytes = 65536,
    Words = BlockBytes / 8
};

uint64_t movieHashFloor(const char *path)
{
    static uint64_t words[2 * Words];
    struct stat status;
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    uint64_t sum = 0;
    if (fstat(file, &status) == 0 && pread(file, words, BlockBytes, 0) == BlockBytes &&
        pread(file, words + Words, BlockBytes, status.st_size - BlockBytes) == BlockBytes) {
        sum = (uint64_t)status.st_size;
        for (int i = 0; i < 2 * Words; ++i)
            sum += words[i];
    }
    close(file);
    return sum;
}
