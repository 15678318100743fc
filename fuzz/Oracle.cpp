#include "Oracle.h"

#include <cstdio>
#include <cstdlib>

void require(bool holds, std::string_view rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken rule: %.*s\n", static_cast<int>(rule.size()), rule.data());
    std::abort();
}
