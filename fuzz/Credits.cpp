// The credits: any bytes give runs of text or an error, never more text than the file could hold.
#include "Oracle.h"

#include <features/about/RtfReader.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(500 + static_cast<double>(size) / 50);
    const auto runs = readRtf(bytesOf(data, size));
    if (!runs)
        return 0;
    qsizetype length = 0;
    for (const RtfRun &run : *runs) {
        require(!run.text.isEmpty(), "a run has a text");
        length += run.text.size();
    }
    require(length <= static_cast<qsizetype>(size), "a text is no longer than its file");
    return 0;
}
