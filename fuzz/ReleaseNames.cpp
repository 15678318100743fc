// Names of releases: every text gives its parts, in time that grows with its length alone.
#include "Oracle.h"

#include <media/names/FileNameParser.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(250);
    const QString name = QString::fromUtf8(bytesOf(data, size));
    const VideoFileComponents parts = parseVideoName(name);
    require(parts.title.size() <= name.size() + 8, "a title comes from its name");
    require(parts.season.value_or(1) >= 0 && parts.episode.value_or(1) >= 0, "numbers are not negative");
    return 0;
}
