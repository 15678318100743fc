#include "Output.h"

#include <fcntl.h>
#include <unistd.h>

std::FILE *measuredOutput()
{
    static std::FILE *const output = [] {
        std::fflush(stdout);
        std::FILE *kept = ::fdopen(::dup(STDOUT_FILENO), "w");
        if (const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC); nowhere >= 0) {
            ::dup2(nowhere, STDOUT_FILENO);
            ::close(nowhere);
        }
        return kept;
    }();
    return output;
}
